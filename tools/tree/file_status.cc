#include "tree/file_status.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace morvane {

namespace {

constexpr std::int64_t NANOSECONDS = 1'000'000'000;

// The longest target that any system keeps.
constexpr std::size_t MOST_TARGET = 65'536;

file_kind kind_of(mode_t mode) {
  if (S_ISREG(mode)) return file_kind::FILE;
  if (S_ISDIR(mode)) return file_kind::DIRECTORY;
  return S_ISLNK(mode) ? file_kind::LINK : file_kind::OTHER;
}

file_status converted(const struct stat& found) {
  file_status status;
  status.kind = kind_of(found.st_mode);
  status.mode = found.st_mode & 07777U;
  status.owner = found.st_uid;
  status.group = found.st_gid;
  status.size = static_cast<std::uint64_t>(found.st_size);
  status.modified = found.st_mtim.tv_sec;
  status.modified_fraction = found.st_mtim.tv_nsec;
  status.device = found.st_dev;
  status.inode = found.st_ino;
  status.changed = std::int64_t{found.st_ctim.tv_sec} * NANOSECONDS + found.st_ctim.tv_nsec;
  return status;
}

std::optional<std::string> target_of(const descriptor& directory, const std::string& name) {
  std::string target(256, '\0');
  for (;;) {
    const ssize_t count =
        readlinkat(directory.number(), name.c_str(), target.data(), target.size());
    if (count < 0) return std::nullopt;
    if (static_cast<std::size_t>(count) < target.size() || target.size() >= MOST_TARGET) {
      target.resize(static_cast<std::size_t>(count));
      return target;
    }
    target.resize(2 * target.size());
  }
}

}  // namespace

std::string_view kind_name(file_kind kind) {
  constexpr std::array<std::string_view, 4> NAMES = {"file", "directory", "link", "other"};
  return NAMES[static_cast<std::size_t>(kind)];
}

std::optional<file_status> look_at(const descriptor& directory, const std::string& name) {
  struct stat found;
  if (fstatat(directory.number(), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) {
    return std::nullopt;
  }
  file_status status = converted(found);
  if (status.kind == file_kind::LINK) {
    std::optional<std::string> target = target_of(directory, name);
    if (!target) return std::nullopt;
    status.target = std::move(*target);
  }
  return status;
}

std::optional<file_status> status_of(const descriptor& file) {
  struct stat found;
  if (fstat(file.number(), &found) != 0) return std::nullopt;
  return converted(found);
}

}  // namespace morvane
