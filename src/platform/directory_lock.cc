#include "platform/directory_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "platform/file.h"

namespace morvane {

bool lock_current_directory() {
  // Static: the lock ends with the descriptor.
  static const descriptor directory(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory.is_open() || flock(directory.number(), LOCK_EX | LOCK_NB) == 0) return true;
  return errno != EWOULDBLOCK;
}

}  // namespace morvane
