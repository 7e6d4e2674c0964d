// What the shell says about directories.
#ifndef MORVANE_PLATFORM_DIRECTORY_H
#define MORVANE_PLATFORM_DIRECTORY_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

using file_names = std::vector<std::string>;

// Returns the names in `directory` on the host that match the shell wildcard `pattern`, in the
// order of `ls`, but for those of directories; none where the directory does not exist or nothing
// matches. Nothing where something matches and cannot be listed; standard error then says so.
std::optional<file_names> get_files(std::string_view directory, std::string_view pattern);

// Returns the current directory, without its first component (an automounter's mount prefix) where
// the rest names the same directory and no other user can change that; nothing where it cannot be
// obtained.
std::optional<std::string> get_pwd();

}  // namespace morvane

#endif  // MORVANE_PLATFORM_DIRECTORY_H
