// The checks of how a description is read, line by line.
#ifndef MORVANE_LINT_READING_H
#define MORVANE_LINT_READING_H

#include "distribution/distribution.h"
#include "lint/finding_list.h"

namespace morvane {

// Adds what is wrong with the lines of a description, and takes its suppressions.
void check_reading(const read_description& description, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_READING_H
