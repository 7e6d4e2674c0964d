// The names of what an archive holds.
#ifndef MORVANE_LINT_ARCHIVED_FILES_H
#define MORVANE_LINT_ARCHIVED_FILES_H

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

// Files and links, by their names without "./" and doubled slashes.
using archived_files = std::set<std::string>;

// Returns a name that was taken apart.
std::string joined_name(const std::vector<std::string_view>& parts);

// Tells whether a name begins so.
bool holds_beginning(const archived_files& files, const std::string& beginning);

// Tells whether a file, a link or a directory that is not empty lies at `path`.
bool is_there(const archived_files& files, const std::string& path);

}  // namespace morvane

#endif  // MORVANE_LINT_ARCHIVED_FILES_H
