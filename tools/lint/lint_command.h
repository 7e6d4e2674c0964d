// The command morvane-lint.
#ifndef MORVANE_LINT_LINT_COMMAND_H
#define MORVANE_LINT_LINT_COMMAND_H

#include "command/exit_status.h"

namespace morvane {

exit_status run_lint(int count, char** arguments);

}  // namespace morvane

#endif  // MORVANE_LINT_LINT_COMMAND_H
