#include "platform/trusted_path.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string_view>
#include <vector>

#include "text/words.h"

namespace morvane {

namespace {

// As many links as the system follows on the way to a file.
constexpr int MOST_LINKS = 40;

bool is_trusted(uid_t owner) {
  return owner == 0 || owner == geteuid();
}

// Tells whether somebody else may put another entry into the place of one in that directory.
bool can_be_changed(const struct stat& directory) {
  // There only two can replace an entry: the directory's owner, who is trusted, and its own, who is
  // looked at next.
  if ((directory.st_mode & S_ISVTX) != 0) return false;
  const bool trusted_group = directory.st_gid == 0 || directory.st_gid == getegid();
  return (directory.st_mode & S_IWOTH) != 0 ||
         ((directory.st_mode & S_IWGRP) != 0 && !trusted_group);
}

// Puts the parts of `path` on top of `parts`, the first of them last.
void push_parts(std::vector<std::string>& parts, std::string_view path) {
  const auto words = split_words(path, "/");
  parts.insert(parts.end(), words.rbegin(), words.rend());
}

}  // namespace

// Walks from the root as the system does, an entry at a time; what a link leads to comes before the
// parts that are still to go.
bool cannot_be_redirected(const std::string& path) {
  std::vector<std::string> parts;  // still to go, the next one last
  push_parts(parts, path);
  std::filesystem::path reached = "/";
  int links = 0;
  for (;;) {
    struct stat status;
    if (lstat(reached.c_str(), &status) != 0 || !is_trusted(status.st_uid)) return false;
    if (S_ISLNK(status.st_mode)) {
      std::error_code error;
      const std::filesystem::path target = std::filesystem::read_symlink(reached, error);
      if (error || ++links > MOST_LINKS) return false;
      push_parts(parts, target.native());
      reached = target.is_absolute() ? "/" : reached.parent_path();
    } else if (!S_ISDIR(status.st_mode) || can_be_changed(status)) {
      return false;
    }
    // What is reached holds no link any more, so that its parent is what its name says.
    while (!parts.empty() && (parts.back() == "." || parts.back() == "..")) {
      if (parts.back() == "..") reached = reached.parent_path();
      parts.pop_back();
    }
    if (parts.empty()) return true;
    reached /= parts.back();
    parts.pop_back();
  }
}

}  // namespace morvane
