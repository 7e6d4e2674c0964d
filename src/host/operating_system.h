// What system the host runs, and whether products can be installed on it.
#ifndef MORVANE_HOST_OPERATING_SYSTEM_H
#define MORVANE_HOST_OPERATING_SYSTEM_H

#include <sys/utsname.h>

#include <string>
#include <string_view>

namespace morvane {

// What `check_host_system` learnt of the host.
extern utsname name;

// Returns the system name and the major release joined, such as "SunOS5"; an empty text, and a
// warning on standard error, where the host does not tell.
std::string whichOS();

// Checks the system, its release, the machine and what the site demands, and prints what is wrong.
// Returns whether every check passed. A host that cannot be identified ends the program.
bool check_host_system();

// Returns the number that a release is compared by: made of its first, third and fifth character.
int release_number(std::string_view release);

}  // namespace morvane

#endif  // MORVANE_HOST_OPERATING_SYSTEM_H
