// The checks, put together.
#ifndef MORVANE_LINT_LINT_H
#define MORVANE_LINT_LINT_H

#include "distribution/distribution.h"
#include "lint/finding_list.h"

namespace morvane {

// Adds what is wrong with a description by itself.
void lint_description(const read_description& description, finding_list& findings);

// Adds what is wrong in a distribution.
void lint_distribution(const distribution& looked_at, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_LINT_H
