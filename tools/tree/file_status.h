// What lies under a name in an open directory. No link is followed.
#ifndef MORVANE_TREE_FILE_STATUS_H
#define MORVANE_TREE_FILE_STATUS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file.h"

namespace morvane {

enum class file_kind { FILE, DIRECTORY, LINK, OTHER };

// Returns "file", "directory", "link" or "other".
std::string_view kind_name(file_kind kind);

struct file_status {
  file_kind kind = file_kind::OTHER;
  unsigned mode = 0;  // the permissions, with the set-id bits
  std::uint64_t owner = 0;
  std::uint64_t group = 0;
  std::uint64_t size = 0;
  std::int64_t modified = 0;           // seconds
  std::int64_t modified_fraction = 0;  // nanoseconds more
  std::string target;                  // of a link

  // What tells it from any other, and from itself before a change.
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t changed = 0;  // nanoseconds

  bool operator==(const file_status&) const = default;
};

// Returns what lies under `name` in `directory`, or nothing, as `errno` then tells.
std::optional<file_status> look_at(const descriptor& directory, const std::string& name);

// Returns the status of an open file; not of a link.
std::optional<file_status> status_of(const descriptor& file);

}  // namespace morvane

#endif  // MORVANE_TREE_FILE_STATUS_H
