#include "command/whole_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/file.h"

namespace morvane {

namespace {

// Gives a file the mode that a new one has.
bool open_to_others(const descriptor& file) {
  const mode_t mask = umask(0);
  umask(mask);
  return fchmod(file.number(), 0666 & ~mask) == 0;
}

bool may_be_replaced(const struct stat& status) {
  if (S_ISREG(status.st_mode)) return true;
  errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  return false;
}

}  // namespace

bool write_whole_file(const std::string& path, std::string_view content) {
  struct stat status;
  if (lstat(path.c_str(), &status) == 0 && !may_be_replaced(status)) return false;
  std::string scratch = path + ".XXXXXX";
  descriptor file(mkstemp(scratch.data()));
  if (!file.is_open()) return false;
  const bool written = replace_content(file, content) && open_to_others(file) && file.close() &&
                       rename(scratch.c_str(), path.c_str()) == 0;
  if (written) return true;
  const int why = errno;
  unlink(scratch.c_str());
  errno = why;
  return false;
}

bool write_whole_file_in(const descriptor& directory, const std::string& name,
                         std::string_view content, unsigned mode, int group) {
  struct stat status;
  const int number = directory.number();
  if (fstatat(number, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
      !may_be_replaced(status)) {
    return false;
  }
  const std::string scratch = name + "." + std::to_string(getpid());
  constexpr int NEW = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  descriptor file(openat(number, scratch.c_str(), NEW, 0600));
  if (!file.is_open()) return false;
  const bool grouped =
      group < 0 || fchown(file.number(), static_cast<uid_t>(-1), static_cast<gid_t>(group)) == 0;
  const bool written = grouped && replace_content(file, content) &&
                       fchmod(file.number(), mode) == 0 && file.close() &&
                       renameat(number, scratch.c_str(), number, name.c_str()) == 0;
  if (written) return true;
  const int why = errno;
  unlinkat(number, scratch.c_str(), 0);
  errno = why;
  return false;
}

}  // namespace morvane
