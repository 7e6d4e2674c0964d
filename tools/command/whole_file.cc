#include "command/whole_file.h"

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

}  // namespace

bool write_whole_file(const std::string& path, std::string_view content) {
  struct stat status;
  if (lstat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return false;
  }
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

}  // namespace morvane
