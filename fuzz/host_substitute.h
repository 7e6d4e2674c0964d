// A made-up host in the place of the shell and of the user database: no command is ever run.
#ifndef MORVANE_FUZZ_HOST_SUBSTITUTE_H
#define MORVANE_FUZZ_HOST_SUBSTITUTE_H

#include <string>

#include "input.h"

namespace morvane {

// Sets the host up for one run in `directory` with the files and the name of `input`, which must
// live as long as the run.
//
// Listings show the files of the input. There are these, the directories above them, what the
// operator has created, and the files of the distribution. A command that names "broken" fails, as
// does "false"; all others succeed. "root", "daemon" and "operator" are users and groups.
void set_up_host(const run_input& input, const std::string& directory);

}  // namespace morvane

#endif  // MORVANE_FUZZ_HOST_SUBSTITUTE_H
