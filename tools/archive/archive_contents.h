// The contents of the members of an archive.
#ifndef MORVANE_ARCHIVE_ARCHIVE_CONTENTS_H
#define MORVANE_ARCHIVE_ARCHIVE_CONTENTS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

struct member_content {
  std::string digest;
  std::uint64_t size = 0;
  std::int64_t modified = 0;  // seconds
};

// Returns one for each member of the tar archive `path`, in their order; nothing where it cannot be
// read in full. Look first what `read_archive` says of it.
std::optional<std::vector<member_content>> contents_of(const std::string& path);

}  // namespace morvane

#endif  // MORVANE_ARCHIVE_ARCHIVE_CONTENTS_H
