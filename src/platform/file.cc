#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace morvane {

namespace {

bool is_null_device(const struct stat& status) {
  struct stat null;
  return S_ISCHR(status.st_mode) && stat("/dev/null", &null) == 0 && S_ISCHR(null.st_mode) &&
         status.st_rdev == null.st_rdev;
}

bool is_other_device(const struct stat& status) {
  return (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode)) && !is_null_device(status);
}

}  // namespace

bool descriptor::close() {
  return ::close(std::exchange(number_, -1)) == 0;
}

descriptor open_for_reading(const std::string& path) {
  descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status;
  // What was opened is looked at, not the path: others may turn that elsewhere meanwhile.
  if (!file.is_open() || fstat(file.number(), &status) != 0) return descriptor();
  if (!is_other_device(status)) return file;
  file.close();
  errno = ENODEV;
  return descriptor();
}

descriptor open_for_writing(const std::string& path, bool& created) {
  constexpr int FLAGS = O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  constexpr mode_t AS_THE_MASK_ALLOWS = 0666;
  descriptor file(open(path.c_str(), FLAGS | O_EXCL, AS_THE_MASK_ALLOWS));
  created = file.is_open();
  if (created) return file;
  // As it is; where it is a link that leads nowhere, what it names is created.
  return descriptor(open(path.c_str(), FLAGS, AS_THE_MASK_ALLOWS));
}

ssize_t read_uninterrupted(const descriptor& file, char* block, std::size_t size) {
  ssize_t count;
  do {
    count = read(file.number(), block, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

std::optional<std::string> read_rest(const descriptor& file, std::size_t most) {
  std::string content;
  std::array<char, 4096> block;
  for (;;) {
    const ssize_t count = read_uninterrupted(file, block.data(), block.size());
    if (count < 0) return std::nullopt;
    if (count == 0) return content;
    content.append(block.data(), static_cast<std::size_t>(count));
    if (content.size() > most) {
      errno = EFBIG;
      return std::nullopt;
    }
  }
}

bool replace_content(const descriptor& file, std::string_view content) {
  // A pipe or a device has no length to cut.
  const bool has_no_length = ftruncate(file.number(), 0) != 0;
  if (has_no_length && errno != EINVAL) return false;
  while (!content.empty()) {
    const ssize_t count = write(file.number(), content.data(), content.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool is_same_file(const std::string& a, const std::string& b) {
  struct stat first;
  struct stat second;
  return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

bool is_file_at(const std::string& path, const descriptor& file) {
  struct stat there;
  struct stat opened;
  return lstat(path.c_str(), &there) == 0 && fstat(file.number(), &opened) == 0 &&
         there.st_dev == opened.st_dev && there.st_ino == opened.st_ino;
}

}  // namespace morvane
