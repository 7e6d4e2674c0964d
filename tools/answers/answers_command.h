// The command morvane-answers.
#ifndef MORVANE_ANSWERS_ANSWERS_COMMAND_H
#define MORVANE_ANSWERS_ANSWERS_COMMAND_H

#include "command/exit_status.h"

namespace morvane {

// A run that is recorded ends the process itself, as the program ends.
exit_status run_answers(int count, char** arguments);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_ANSWERS_COMMAND_H
