// The checks of what the products of a distribution need of each other.
#ifndef MORVANE_LINT_NEEDS_H
#define MORVANE_LINT_NEEDS_H

#include "distribution/distribution.h"
#include "lint/finding_list.h"

namespace morvane {

// Adds needs that a distribution does not meet, rings of needs, and products that it cannot
// install.
void check_needs(const distribution& looked_at, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_NEEDS_H
