// The checks, put together.
#ifndef MORVANE_LINT_LINT_H
#define MORVANE_LINT_LINT_H

#include <string>

#include "distribution/distribution.h"
#include "lint/finding_list.h"

namespace morvane {

// Fills the message table, which has the keywords of descriptions, from the message file in
// `directory`, else from the one that came with the command; returns whether there is one.
bool choose_messages(const std::string& directory);

// Adds what is wrong with a description by itself.
void lint_description(const read_description& description, finding_list& findings);

// Adds what is wrong in a distribution.
void lint_distribution(const distribution& looked_at, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_LINT_H
