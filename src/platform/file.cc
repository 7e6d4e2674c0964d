#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <new>

namespace morvane {

int open_for_reading(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) return -1;
  struct stat status;
  const bool is_device =
      fstat(descriptor, &status) != 0 || S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode);
  if (!is_device) return descriptor;
  close(descriptor);
  return -1;
}

int open_for_writing(const std::string& path) {
  constexpr mode_t AS_THE_MASK_ALLOWS = 0666;
  return open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK | O_NOCTTY,
              AS_THE_MASK_ALLOWS);
}

std::FILE* stream_of(int descriptor, const char* mode) {
  std::FILE* stream = fdopen(descriptor, mode);
  if (stream == nullptr) throw std::bad_alloc();
  return stream;
}

bool is_same_file(const std::string& a, const std::string& b) {
  struct stat first;
  struct stat second;
  return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace morvane
