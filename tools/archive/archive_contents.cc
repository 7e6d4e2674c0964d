#include "archive/archive_contents.h"

#include <archive.h>
#include <archive_entry.h>

#include <array>
#include <memory>

#include "archive/archive_reader.h"
#include "platform/file.h"
#include "tree/digest.h"

namespace morvane {

namespace {

using open_archive = std::unique_ptr<archive, int (*)(archive*)>;

// Returns nothing where the content cannot be read in full.
std::optional<member_content> content_of(archive* opened, archive_entry* entry) {
  member_content content;
  content.modified = archive_entry_mtime(entry);
  digester digest;
  std::array<char, ARCHIVE_BLOCK> block;
  for (;;) {
    const la_ssize_t count = archive_read_data(opened, block.data(), block.size());
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    content.size += static_cast<std::uint64_t>(count);
    digest.add({block.data(), static_cast<std::size_t>(count)});
  }
  content.digest = digest.take();
  return content;
}

}  // namespace

std::optional<std::vector<member_content>> contents_of(const std::string& path) {
  const descriptor file = open_for_reading(path);
  if (!file.is_open()) return std::nullopt;
  const open_archive opened(archive_read_new(), archive_read_free);
  archive_read_support_format_tar(opened.get());
  if (archive_read_open_fd(opened.get(), file.number(), ARCHIVE_BLOCK) != ARCHIVE_OK) {
    return std::nullopt;
  }
  std::vector<member_content> contents;
  for (;;) {
    archive_entry* entry = nullptr;
    const int result = archive_read_next_header(opened.get(), &entry);
    if (result == ARCHIVE_EOF) return contents;
    if (result < ARCHIVE_WARN || contents.size() == MOST_MEMBERS) return std::nullopt;
    std::optional<member_content> content = content_of(opened.get(), entry);
    if (!content) return std::nullopt;
    contents.push_back(std::move(*content));
  }
}

}  // namespace morvane
