// Finding again, in lines of the installation makefile, what its texts were filled with.
#ifndef MORVANE_INSTALL_MAKEFILE_RULE_MATCH_H
#define MORVANE_INSTALL_MAKEFILE_RULE_MATCH_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/places.h"

namespace morvane {

using text_lines = std::vector<std::string_view>;

// Returns the lines of `text` without their ends.
text_lines lines_of(std::string_view text);

// Returns what stands at the place `wanted` in the first of `lines` that fits a line of `rule`, a
// text of `rule_texts.h`, whose other places are filled with `known`. The line of the rule that
// comes first is looked for first.
std::optional<std::string> value_at(std::string_view wanted, std::string_view rule,
                                    const places& known, const text_lines& lines);

// Returns for each line of `rule` that has the place `wanted` what stands there in all of `lines`
// that fit it.
std::vector<std::vector<std::string>> lists_at(std::string_view wanted, std::string_view rule,
                                               const places& known, const text_lines& lines);

// Tells whether one of `lines` is a line of `rule`, filled with `known`: one that holds a place,
// and that stands only where the condition `mark` holds if that is not empty.
bool holds_line_of(std::string_view rule, std::string_view mark, const places& known,
                   const text_lines& lines);

}  // namespace morvane

#endif  // MORVANE_INSTALL_MAKEFILE_RULE_MATCH_H
