#include "answers/text_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>

#include "platform/file.h"

namespace morvane {

std::optional<std::string> read_text_file(const std::string& path, std::size_t longest) {
  const descriptor file = open_for_reading(path);
  if (!file.is_open()) return std::nullopt;
  std::string content;
  std::array<char, 65536> block;
  while (content.size() <= longest) {
    const ssize_t size = read_uninterrupted(file, block.data(), block.size());
    if (size < 0) return std::nullopt;
    if (size == 0) break;
    content.append(block.data(), static_cast<std::size_t>(size));
  }
  return content;
}

bool may_put_file(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return false;
  }
  const std::size_t slash = path.rfind('/');
  const std::string above = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  return faccessat(AT_FDCWD, above.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

bool put_text_file(const std::string& path, std::string_view content) {
  constexpr mode_t MODE = 0666;  // less what the file-creation mask takes
  const std::string beside = path + "." + std::to_string(getpid());
  descriptor file(open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, MODE));
  if (!file.is_open()) return false;
  const bool written = replace_content(file, content) && fsync(file.number()) == 0;
  if (file.close() && written && std::rename(beside.c_str(), path.c_str()) == 0) return true;
  const int why = errno;
  unlink(beside.c_str());
  errno = why;
  return false;
}

}  // namespace morvane
