// Directories that are opened step by step, so that no link below them leads elsewhere, whoever
// puts one there, and whenever.
#ifndef MORVANE_TREE_DIRECTORY_H
#define MORVANE_TREE_DIRECTORY_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"

namespace morvane {

// Opens the absolute directory `path`, whose links are followed once, before: what is opened then
// is reached from the root without any. Not open where that fails, as `errno` tells.
descriptor open_directory(const std::string& path);

// Opens the directory `path`, such as "lib/shown" or ".", below `directory`; follows no link, and
// ".." leads nowhere. Not open where that fails, as `errno` tells.
descriptor open_below(const descriptor& directory, std::string_view path);

// Opens the plain file `path` below `directory` for reading, likewise, and waits for nothing.
descriptor open_file_below(const descriptor& directory, std::string_view path);

// The same for the name of a file in `directory`.
descriptor open_file_in(const descriptor& directory, const std::string& name);

// A name, and the path of the directory that it stands in: "lib/shown/a" is "lib/shown" and "a".
struct split_path {
  std::string above;
  std::string name;
};
split_path split(std::string_view path);

// Returns the names in `directory`, sorted, or nothing where it cannot be read, as `errno` tells.
std::optional<std::vector<std::string>> names_in(const descriptor& directory);

// Returns `path`, absolute or not, without the slashes and full stops that mean nothing: "/" and
// "." are the shortest. Nothing where a ".." stands in it.
std::optional<std::string> normal_path(std::string_view path);

}  // namespace morvane

#endif  // MORVANE_TREE_DIRECTORY_H
