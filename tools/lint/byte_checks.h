// The checks of the bytes of a description, whatever they say.
#ifndef MORVANE_LINT_BYTE_CHECKS_H
#define MORVANE_LINT_BYTE_CHECKS_H

#include <string_view>
#include <vector>

#include "distribution/distribution.h"
#include "lint/finding_list.h"

namespace morvane {

// Tells whether a text begins with the mark that some editors put before UTF-8.
bool begins_with_mark(std::string_view text);

// Adds which bytes of `description`, in its lines, are not printable ASCII.
void check_bytes(const read_description& description, const std::vector<std::string_view>& lines,
                 finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_BYTE_CHECKS_H
