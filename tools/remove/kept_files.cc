#include "remove/kept_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tree/copy.h"
#include "tree/directory.h"

namespace morvane {

int move_file(const descriptor& directory, const std::string& name, const file_status& looked_at,
              const std::string& to) {
  struct stat there;
  if (!make_private_directories(split(to).above)) return errno;
  if (lstat(to.c_str(), &there) == 0) return EEXIST;
  if (look_at(directory, name) != looked_at) return EAGAIN;
  if (renameat(directory.number(), name.c_str(), AT_FDCWD, to.c_str()) == 0) return 0;
  if (errno != EXDEV) return errno;
  if (!copy_to(directory, name, looked_at, to)) return errno;
  if (look_at(directory, name) == looked_at && unlinkat(directory.number(), name.c_str(), 0) == 0) {
    return 0;
  }
  unlink(to.c_str());
  return EAGAIN;
}

}  // namespace morvane
