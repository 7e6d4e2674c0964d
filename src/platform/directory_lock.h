// Keeping others out of a directory in which files are written and read again.
#ifndef MORVANE_PLATFORM_DIRECTORY_LOCK_H
#define MORVANE_PLATFORM_DIRECTORY_LOCK_H

#include <string_view>

namespace morvane {

// What is said where another one has the lock.
inline constexpr std::string_view OTHER_CONFIGURATOR =
    "another configurator is at work in this directory";

// Locks the current directory until the process ends. Returns false where another one has the lock;
// where there can be none, this goes on without.
bool lock_current_directory();

}  // namespace morvane

#endif  // MORVANE_PLATFORM_DIRECTORY_LOCK_H
