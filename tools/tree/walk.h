// All that lies in a directory.
#ifndef MORVANE_TREE_WALK_H
#define MORVANE_TREE_WALK_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "platform/file.h"
#include "tree/file_status.h"

namespace morvane {

// What lies deeper is not looked at: it is a fault.
inline constexpr std::size_t DEEPEST_DIRECTORY = 200;

struct tree_file {
  std::string path;  // below the directory, such as "lib/shown"
  file_status status;
};

struct tree_fault {
  std::string path;
  int error = 0;  // an errno
};

struct walked_tree {
  std::vector<tree_file> files;  // sorted by their paths, as the bytes sort
  std::vector<tree_fault> faults;
};

// Returns what lies in `directory`, without itself; into a directory below it only where `enter`
// says so. What vanishes meanwhile was never there.
walked_tree walk(
    const descriptor& directory,
    const std::function<bool(const tree_file&)>& enter = [](const tree_file&) { return true; });

}  // namespace morvane

#endif  // MORVANE_TREE_WALK_H
