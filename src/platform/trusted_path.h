// Directories whose name other users of the host can make mean something else.
#ifndef MORVANE_PLATFORM_TRUSTED_PATH_H
#define MORVANE_PLATFORM_TRUSTED_PATH_H

#include <string>

namespace morvane {

// Tells whether nobody but the superuser and the effective user can make the absolute directory
// `path` lead elsewhere: every directory and link on the way belongs to one of them, and none of
// the directories can be written by others, unless it is sticky. The superuser's group and the
// effective one may write to them.
bool cannot_be_redirected(const std::string& path);

}  // namespace morvane

#endif  // MORVANE_PLATFORM_TRUSTED_PATH_H
