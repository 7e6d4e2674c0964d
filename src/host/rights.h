// Whether the operator may give files to other owners and groups.
#ifndef MORVANE_HOST_RIGHTS_H
#define MORVANE_HOST_RIGHTS_H

#include <optional>
#include <string_view>

namespace morvane {

// The name of the generated makefile. Group changes are tried on a file of this name, which the
// makefile replaces later.
inline constexpr std::string_view MAKEFILE_NAME = "install.mk";

// Tells whether the operator may give files to the user and to the group, where given, and prints
// why not. A group is tried on a scratch file in the current directory; where that file cannot be
// created the program ends.
bool check_chown_rights(std::optional<std::string_view> user_name,
                        std::optional<std::string_view> group_name);

// Runs the site's own check of the operator's rights; ends the program where it fails. A run does
// not make it by itself.
void check_rights();

}  // namespace morvane

#endif  // MORVANE_HOST_RIGHTS_H
