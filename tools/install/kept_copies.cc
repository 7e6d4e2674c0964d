#include "install/kept_copies.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>

#include "platform/file.h"
#include "tree/directory.h"
#include "tree/file_status.h"

namespace morvane {

namespace {

constexpr mode_t FOR_THE_OWNER_ALONE = 0600;

bool copy_content(const descriptor& from, const descriptor& to) {
  std::array<char, 65536> block;
  for (;;) {
    const ssize_t count = read_uninterrupted(from, block.data(), block.size());
    if (count <= 0) return count == 0;
    for (ssize_t done = 0; done < count;) {
      const ssize_t written =
          write(to.number(), block.data() + done, static_cast<std::size_t>(count - done));
      if (written < 0 && errno != EINTR) return false;
      if (written > 0) done += written;
    }
  }
}

// The copy of a file is its owner's alone until it has all that the file has.
bool copy_file(const descriptor& from, const std::string& to) {
  struct stat status;
  if (fstat(from.number(), &status) != 0) return false;
  constexpr int NEW = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  descriptor copy(open(to.c_str(), NEW, FOR_THE_OWNER_ALONE));
  if (!copy.is_open() || !copy_content(from, copy)) return false;
  const bool owned = fchown(copy.number(), status.st_uid, status.st_gid) == 0 || geteuid() != 0;
  const struct timespec times[] = {status.st_atim, status.st_mtim};
  return owned && fchmod(copy.number(), status.st_mode & 07777) == 0 &&
         futimens(copy.number(), times) == 0 && copy.close();
}

bool copy_link(const file_status& link, const std::string& to) {
  if (symlink(link.target.c_str(), to.c_str()) != 0) return false;
  const bool owned =
      lchown(to.c_str(), static_cast<uid_t>(link.owner), static_cast<gid_t>(link.group)) == 0;
  return owned || geteuid() != 0;
}

// Copies `path`, which lies below an open directory.
bool keep(const descriptor& product, const std::string& path, const std::string& to) {
  const split_path at = split(path);
  const descriptor above = open_below(product, at.above);
  const auto status = above.is_open() ? look_at(above, at.name) : std::nullopt;
  if (!status) return errno == ENOENT;
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(to).parent_path(), error);
  if (error) {
    errno = error.value();
    return false;
  }
  if (status->kind == file_kind::LINK) return copy_link(*status, to);
  const descriptor file = open_file_below(product, path);
  return file.is_open() && copy_file(file, to);
}

}  // namespace

std::string keep_replaced(const product_plan& product, const std::string& directory) {
  const std::string& top = product.facts.path;
  const descriptor opened = open_directory(top);
  if (!opened.is_open()) return top + ": " + std::strerror(errno);
  for (const std::string& path : product.replaced) {
    const std::string whole = top + "/" + path;
    if (!keep(opened, path, directory + whole)) {
      return "no copy of " + whole + " could be kept: " + std::strerror(errno);
    }
  }
  return "";
}

}  // namespace morvane
