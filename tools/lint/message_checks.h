// The checks of message files.
#ifndef MORVANE_LINT_MESSAGE_CHECKS_H
#define MORVANE_LINT_MESSAGE_CHECKS_H

#include <string>

#include "lint/finding_list.h"

namespace morvane {

// Adds what is wrong with the message file `file`. Returns false where it cannot be read.
bool check_messages(const std::string& file, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_MESSAGE_CHECKS_H
