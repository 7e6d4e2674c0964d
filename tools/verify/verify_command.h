// The command morvane-verify.
#ifndef MORVANE_VERIFY_VERIFY_COMMAND_H
#define MORVANE_VERIFY_VERIFY_COMMAND_H

#include "command/exit_status.h"

namespace morvane {

exit_status run_verify(int count, char** arguments);

}  // namespace morvane

#endif  // MORVANE_VERIFY_VERIFY_COMMAND_H
