// The checks of how messages look on the screen.
#ifndef MORVANE_LINT_MESSAGE_LAYOUT_H
#define MORVANE_LINT_MESSAGE_LAYOUT_H

#include <string>

#include "lint/finding_list.h"
#include "lint/message_file.h"

namespace morvane {

// Adds where messages of `file`, called `name`, are too wide or too high for the screen, or do not
// fit the title box.
void check_layout(const std::string& name, const message_file& file, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_MESSAGE_LAYOUT_H
