// The command line of morvane-install.
#ifndef MORVANE_INSTALL_INSTALL_COMMAND_H
#define MORVANE_INSTALL_INSTALL_COMMAND_H

#include "command/exit_status.h"

namespace morvane {

exit_status run_install(int count, char** arguments);

}  // namespace morvane

#endif  // MORVANE_INSTALL_INSTALL_COMMAND_H
