#include "tree/directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>

#include "text/words.h"

namespace morvane {

namespace {

constexpr int AS_DIRECTORY = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

struct freeing {
  void operator()(char* text) const { std::free(text); }
};

struct closing {
  void operator()(DIR* directory) const { closedir(directory); }
};

}  // namespace

descriptor open_directory(const std::string& path) {
  const std::unique_ptr<char, freeing> real(realpath(path.c_str(), nullptr));
  if (real == nullptr) return descriptor();
  const descriptor root(open("/", AS_DIRECTORY));
  if (!root.is_open()) return descriptor();
  return open_below(root, real.get());
}

descriptor open_below(const descriptor& directory, std::string_view path) {
  descriptor reached(openat(directory.number(), ".", AS_DIRECTORY));
  for (const std::string_view part : split_words(path, "/")) {
    if (!reached.is_open()) break;
    if (part == ".") continue;
    if (part == "..") {
      errno = EINVAL;
      return descriptor();
    }
    reached = descriptor(openat(reached.number(), std::string(part).c_str(), AS_DIRECTORY));
  }
  return reached;
}

descriptor open_file_below(const descriptor& directory, std::string_view path) {
  const split_path wanted = split(path);
  const descriptor above = open_below(directory, wanted.above);
  return above.is_open() ? open_file_in(above, wanted.name) : descriptor();
}

descriptor open_file_in(const descriptor& directory, const std::string& name) {
  constexpr int AS_FILE = O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  descriptor file(openat(directory.number(), name.c_str(), AS_FILE));
  struct stat found;
  if (!file.is_open() || fstat(file.number(), &found) != 0) return descriptor();
  if (S_ISREG(found.st_mode)) return file;
  errno = EINVAL;
  return descriptor();
}

split_path split(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return {".", std::string(path)};
  return {std::string(path.substr(0, slash)), std::string(path.substr(slash + 1))};
}

std::optional<std::vector<std::string>> names_in(const descriptor& directory) {
  // A descriptor of its own: reading moves on what it shares.
  const int number = openat(directory.number(), ".", AS_DIRECTORY);
  if (number < 0) return std::nullopt;
  const std::unique_ptr<DIR, closing> listed(fdopendir(number));
  if (listed == nullptr) {
    close(number);
    return std::nullopt;
  }
  std::vector<std::string> names;
  for (;;) {
    errno = 0;
    const dirent* entry = readdir(listed.get());
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  if (errno != 0) return std::nullopt;
  std::ranges::sort(names);
  return names;
}

std::optional<std::string> normal_path(std::string_view path) {
  const bool absolute = path.starts_with('/');
  std::string normal;
  for (const std::string_view part : split_words(path, "/")) {
    if (part == ".") continue;
    if (part == "..") return std::nullopt;
    if (absolute || !normal.empty()) normal += '/';
    normal += part;
  }
  if (normal.empty()) return absolute ? "/" : ".";
  return normal;
}

}  // namespace morvane
