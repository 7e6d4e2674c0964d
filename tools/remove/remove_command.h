// The command morvane-remove.
#ifndef MORVANE_REMOVE_REMOVE_COMMAND_H
#define MORVANE_REMOVE_REMOVE_COMMAND_H

#include "command/exit_status.h"

namespace morvane {

exit_status run_remove(int count, char** arguments);

}  // namespace morvane

#endif  // MORVANE_REMOVE_REMOVE_COMMAND_H
