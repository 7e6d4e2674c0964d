#include "tree/copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string_view>

#include "tree/directory.h"

namespace morvane {

namespace {

constexpr mode_t OWN_DIRECTORY = 0700;
constexpr mode_t OWN_FILE = 0600;

bool write_all(const descriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file.number(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Copies the bytes of `from` between two places to the same place in `to`.
bool copy_piece(const descriptor& from, const descriptor& to, off_t begin, off_t end) {
  std::array<char, 65'536> block;
  if (lseek(from.number(), begin, SEEK_SET) < 0 || lseek(to.number(), begin, SEEK_SET) < 0) {
    return false;
  }
  while (begin < end) {
    const auto most = std::min<off_t>(block.size(), end - begin);
    const ssize_t count = read_uninterrupted(from, block.data(), static_cast<std::size_t>(most));
    if (count == 0) errno = EAGAIN;  // it was cut meanwhile
    if (count <= 0) return false;
    if (!write_all(to, {block.data(), static_cast<std::size_t>(count)})) return false;
    begin += count;
  }
  return true;
}

// Copies `size` bytes, and no holes: others may write to the file meanwhile, and make it longer
// than any disk is.
bool copy_content(const descriptor& from, const descriptor& to, off_t size) {
  for (off_t begin = 0; begin < size;) {
    begin = lseek(from.number(), begin, SEEK_DATA);
    if (begin < 0 && errno == ENXIO) break;  // only holes follow
    const off_t end = begin < 0 ? -1 : std::min(lseek(from.number(), begin, SEEK_HOLE), size);
    if (end < 0 || !copy_piece(from, to, begin, end)) return false;
    begin = end;
  }
  return ftruncate(to.number(), size) == 0;
}

// The owner comes first: a change of it takes bits of the mode.
bool copy_rights(const descriptor& from, const descriptor& to) {
  struct stat status;
  if (fstat(from.number(), &status) != 0) return false;
  const std::array<timespec, 2> times = {status.st_atim, status.st_mtim};
  const bool owned = fchown(to.number(), status.st_uid, status.st_gid) == 0 || geteuid() != 0;
  return owned && fchmod(to.number(), status.st_mode & 07777U) == 0 &&
         futimens(to.number(), times.data()) == 0;
}

bool copy_file(const descriptor& directory, const std::string& name, const file_status& looked_at,
               const std::string& to) {
  const descriptor from = open_file_in(directory, name);
  if (!from.is_open()) return false;
  if (status_of(from) != looked_at) {
    errno = EAGAIN;
    return false;
  }
  constexpr int NEW = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  descriptor copy(open(to.c_str(), NEW, OWN_FILE));
  if (!copy.is_open()) return false;
  const bool copied = copy_content(from, copy, static_cast<off_t>(looked_at.size)) &&
                      copy_rights(from, copy) && fsync(copy.number()) == 0 && copy.close();
  if (copied) return true;
  const int why = errno;
  unlink(to.c_str());
  errno = why;
  return false;
}

bool copy_link(const file_status& link, const std::string& to) {
  if (symlink(link.target.c_str(), to.c_str()) != 0) return false;
  const bool owned =
      lchown(to.c_str(), static_cast<uid_t>(link.owner), static_cast<gid_t>(link.group)) == 0;
  return owned || geteuid() != 0;
}

}  // namespace

bool make_private_directories(const std::string& path) {
  std::filesystem::path reached;
  for (const auto& part : std::filesystem::path(path)) {
    reached /= part;
    if (mkdir(reached.c_str(), OWN_DIRECTORY) != 0 && errno != EEXIST && errno != EISDIR) {
      return false;
    }
  }
  return true;
}

bool copy_to(const descriptor& directory, const std::string& name, const file_status& looked_at,
             const std::string& to) {
  if (looked_at.kind == file_kind::LINK) return copy_link(looked_at, to);
  return copy_file(directory, name, looked_at, to);
}

}  // namespace morvane
