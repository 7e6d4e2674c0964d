// The checks of archives, and of what descriptions say of them.
#ifndef MORVANE_LINT_ARCHIVES_H
#define MORVANE_LINT_ARCHIVES_H

#include "distribution/distribution.h"
#include "lint/finding_list.h"

namespace morvane {

// Adds what is wrong with the archives of a distribution.
void check_archives(const distribution& looked_at, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_ARCHIVES_H
