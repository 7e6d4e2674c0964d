#include "archive/archive_reader.h"

#include <archive.h>
#include <archive_entry.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/file.h"

namespace morvane {

namespace {

constexpr off_t TAR_BLOCK = 512;

using open_archive = std::unique_ptr<archive, int (*)(archive*)>;

struct compression {
  std::string_view magic;
  const char* program;
};

using namespace std::string_view_literals;
constexpr std::array<compression, 4> COMPRESSIONS = {{{"\x1f\x8b"sv, "gzip"},
                                                      {"BZh"sv, "bzip2"},
                                                      {"\xfd\x37zXZ\0"sv, "xz"},
                                                      {"\x28\xb5\x2f\xfd"sv, "zstd"}}};

// Returns what compressed the file, or null.
const char* compressed_with(const descriptor& file) {
  std::array<char, 6> head{};
  const ssize_t count = pread(file.number(), head.data(), head.size(), 0);
  const std::string_view start(head.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  for (const auto& [magic, program] : COMPRESSIONS) {
    if (start.starts_with(magic)) return program;
  }
  return nullptr;
}

// Tells whether the last block of a file of `size` bytes is one of zeros, as an archive ends in.
bool ends_in_zeros(const descriptor& file, off_t size) {
  std::array<char, TAR_BLOCK> block{};
  if (size < TAR_BLOCK) return false;
  const ssize_t count = pread(file.number(), block.data(), block.size(), size - TAR_BLOCK);
  return count == TAR_BLOCK && std::ranges::count(block, '\0') == TAR_BLOCK;
}

member_kind kind_of(archive_entry* entry) {
  if (archive_entry_hardlink(entry) != nullptr) return member_kind::HARD_LINK;
  switch (archive_entry_filetype(entry)) {
    case AE_IFREG:
      return member_kind::FILE;
    case AE_IFDIR:
      return member_kind::DIRECTORY;
    case AE_IFLNK:
      return member_kind::LINK;
    default:
      return member_kind::OTHER;
  }
}

std::string text_of(const char* text) {
  return text == nullptr ? "" : text;
}

archive_member member_of(archive_entry* entry) {
  archive_member member;
  member.kind = kind_of(entry);
  member.mode = static_cast<unsigned>(archive_entry_perm(entry));
  member.name = text_of(archive_entry_pathname(entry));
  while (member.name.size() > 1 && member.name.ends_with('/')) member.name.pop_back();
  member.target = text_of(member.kind == member_kind::HARD_LINK ? archive_entry_hardlink(entry)
                                                                : archive_entry_symlink(entry));
  if (member.kind == member_kind::FILE) {
    member.size = static_cast<std::uint64_t>(std::max<la_int64_t>(archive_entry_size(entry), 0));
  }
  return member;
}

std::string content_of_member(archive* opened) {
  std::string content;
  std::array<char, 4096> block;
  while (content.size() < MOST_CONTENT) {
    const la_ssize_t count = archive_read_data(opened, block.data(), block.size());
    if (count <= 0) break;
    content.append(block.data(), static_cast<std::size_t>(count));
  }
  return content;
}

// Reads the members of one archive.
class reader {
 public:
  reader(archive* opened, off_t file_size, std::string_view wanted, archive_content& content)
      : archive_(opened),
        file_size_(file_size),
        wanted_(parts_of_name(wanted)),
        content_(content) {}

  void read_members() {
    for (;;) {
      archive_entry* entry = nullptr;
      const int result = archive_read_next_header(archive_, &entry);
      if (result == ARCHIVE_EOF) return;
      if (result != ARCHIVE_OK && result != ARCHIVE_WARN) {
        fail(archive_fault::NOT_READABLE, text_of(archive_error_string(archive_)));
        return;
      }
      if (!take(entry)) return;
    }
  }

 private:
  void fail(archive_fault fault, std::string reason) {
    content_.fault = fault;
    content_.reason = std::move(reason);
  }

  // Passing over the content of a member does not tell whether it is there.
  bool take(archive_entry* entry) {
    if (archive_entry_size(entry) > file_size_ - archive_read_header_position(archive_)) {
      fail(archive_fault::NOT_READABLE, "it is cut off");
      return false;
    }
    archive_member member = member_of(entry);
    name_bytes_ += member.name.size();
    if (content_.members.size() == MOST_MEMBERS || name_bytes_ > MOST_NAME_BYTES) {
      fail(archive_fault::TOO_MANY, "");
      return false;
    }
    if (member.kind == member_kind::FILE && parts_of_name(member.name) == wanted_) {
      content_.wanted = content_of_member(archive_);
    }
    content_.members.push_back(std::move(member));
    return true;
  }

  archive* archive_;
  off_t file_size_;
  std::vector<std::string_view> wanted_;
  archive_content& content_;
  std::size_t name_bytes_ = 0;
};

archive_content failed(archive_fault fault, std::string reason = "") {
  archive_content content;
  content.fault = fault;
  content.reason = std::move(reason);
  return content;
}

}  // namespace

archive_content read_archive(const std::string& path, std::string_view wanted) {
  const descriptor file = open_for_reading(path);
  struct stat status;
  if (!file.is_open() || fstat(file.number(), &status) != 0) {
    return failed(archive_fault::CANNOT_BE_OPENED, std::strerror(errno));
  }
  if (!S_ISREG(status.st_mode)) return failed(archive_fault::CANNOT_BE_OPENED, "it is no file");
  if (status.st_size == 0) return failed(archive_fault::EMPTY_FILE);
  if (const char* program = compressed_with(file)) {
    return failed(archive_fault::COMPRESSED, program);
  }

  const open_archive opened(archive_read_new(), archive_read_free);
  archive_read_support_format_tar(opened.get());
  if (archive_read_open_fd(opened.get(), file.number(), ARCHIVE_BLOCK) != ARCHIVE_OK) {
    return failed(archive_fault::NOT_READABLE, text_of(archive_error_string(opened.get())));
  }
  archive_content content;
  reader(opened.get(), status.st_size, wanted, content).read_members();
  if (!content.fault && !ends_in_zeros(file, status.st_size)) content.fault = archive_fault::NO_END;
  return content;
}

std::vector<std::string_view> parts_of_name(std::string_view name) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t slash = std::min(name.find('/'), name.size());
    const std::string_view part = name.substr(0, slash);
    if (!part.empty() && part != ".") parts.push_back(part);
    if (slash == name.size()) return parts;
    name.remove_prefix(slash + 1);
  }
}

}  // namespace morvane
