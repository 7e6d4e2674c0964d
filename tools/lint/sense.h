// The checks of what descriptions say, each by itself and all together.
#ifndef MORVANE_LINT_SENSE_H
#define MORVANE_LINT_SENSE_H

#include "distribution/distribution.h"
#include "lint/finding_list.h"

namespace morvane {

// Returns the place of the last entry of `keyword`, which is the one that counts, or of the whole
// file.
place_in_file place_of(const read_description& description, message_number keyword);

// Tells whether two descriptions are levels of the same product and version.
bool are_levels_of_one(const product& a, const product& b);

// Adds what makes no sense in a description by itself.
void check_own_sense(const read_description& description, finding_list& findings);

// Adds what makes no sense in a distribution.
void check_common_sense(const distribution& looked_at, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_SENSE_H
