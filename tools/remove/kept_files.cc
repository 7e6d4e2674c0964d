#include "remove/kept_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>

#include "tree/directory.h"

namespace morvane {

namespace {

constexpr mode_t OWN_DIRECTORY = 0700;
constexpr mode_t OWN_FILE = 0600;

// Makes the directories of `path` that are missing.
bool make_directories(const std::filesystem::path& path) {
  std::filesystem::path reached;
  for (const auto& part : path) {
    reached /= part;
    if (mkdir(reached.c_str(), OWN_DIRECTORY) != 0 && errno != EEXIST && errno != EISDIR) {
      return false;
    }
  }
  return true;
}

bool write_all(const descriptor& file, const char* bytes, ssize_t count) {
  while (count > 0) {
    const ssize_t written = write(file.number(), bytes, static_cast<std::size_t>(count));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    count -= written;
  }
  return true;
}

bool copy_content(const descriptor& from, const descriptor& to) {
  std::array<char, 65'536> block;
  for (;;) {
    const ssize_t count = read_uninterrupted(from, block.data(), block.size());
    if (count < 0) return false;
    if (count == 0) return true;
    if (!write_all(to, block.data(), count)) return false;
  }
}

// The owner comes first: a change of it takes bits of the mode.
bool copy_rights(const descriptor& from, const descriptor& to) {
  struct stat status;
  if (fstat(from.number(), &status) != 0) return false;
  const std::array<timespec, 2> times = {status.st_atim, status.st_mtim};
  return fchown(to.number(), status.st_uid, status.st_gid) == 0 &&
         fchmod(to.number(), status.st_mode & 07777U) == 0 &&
         futimens(to.number(), times.data()) == 0;
}

bool copy_file(const descriptor& directory, const std::string& name, const std::string& to) {
  const descriptor from = open_file_below(directory, name);
  constexpr int NEW = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  descriptor copy(from.is_open() ? open(to.c_str(), NEW, OWN_FILE) : -1);
  if (!copy.is_open()) return false;
  const bool copied = copy_content(from, copy) && copy_rights(from, copy) &&
                      fsync(copy.number()) == 0 && copy.close();
  if (copied) return true;
  const int why = errno;
  unlink(to.c_str());
  errno = why;
  return false;
}

bool copy_link(const file_status& link, const std::string& to) {
  return symlink(link.target.c_str(), to.c_str()) == 0 &&
         lchown(to.c_str(), static_cast<uid_t>(link.owner), static_cast<gid_t>(link.group)) == 0;
}

}  // namespace

int move_file(const descriptor& directory, const std::string& name, const file_status& looked_at,
              const std::string& to) {
  struct stat there;
  if (!make_directories(std::filesystem::path(to).parent_path())) return errno;
  if (lstat(to.c_str(), &there) == 0) return EEXIST;
  if (look_at(directory, name) != looked_at) return EAGAIN;
  if (renameat(directory.number(), name.c_str(), AT_FDCWD, to.c_str()) == 0) return 0;
  if (errno != EXDEV) return errno;
  const bool copied =
      looked_at.kind == file_kind::LINK ? copy_link(looked_at, to) : copy_file(directory, name, to);
  if (!copied) return errno;
  if (look_at(directory, name) == looked_at && unlinkat(directory.number(), name.c_str(), 0) == 0) {
    return 0;
  }
  unlink(to.c_str());
  return EAGAIN;
}

}  // namespace morvane
