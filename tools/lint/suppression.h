// How a suppression is written.
#ifndef MORVANE_LINT_SUPPRESSION_H
#define MORVANE_LINT_SUPPRESSION_H

#include <optional>
#include <string>
#include <string_view>

#include "lint/finding_list.h"

namespace morvane {

// Reads the text of a suppression: "ID: REASON"; returns the identifier, empty where it is
// malformed.
std::string_view allowed_id(std::string_view text);

// Returns what the text of a comment allows in the rest of its line, "lint: allow ID: REASON";
// nothing where it is any other comment. A malformed one is a finding of `file`, and allows nothing
// either.
std::optional<allowance> allowance_of_comment(std::string_view comment, const std::string& file,
                                              const place_in_file& place, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_SUPPRESSION_H
