// The checks of a value by itself, whatever stands around it.
#ifndef MORVANE_LINT_VALUE_CHECKS_H
#define MORVANE_LINT_VALUE_CHECKS_H

#include <string>

#include "distribution/distribution.h"
#include "lint/finding_list.h"

namespace morvane {

// Adds what is wrong with the value of `entry`, which stands in `file`: a number or version that is
// none, a list that is read otherwise than it is meant, a text that is cut.
void check_value(const located_entry& entry, const std::string& file, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_VALUE_CHECKS_H
