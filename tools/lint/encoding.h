// What a file was saved as.
#ifndef MORVANE_LINT_ENCODING_H
#define MORVANE_LINT_ENCODING_H

#include <string_view>

namespace morvane {

// Tells whether a text is UTF-16, with its mark or without: every other byte is zero.
bool is_of_wide_characters(std::string_view text);

}  // namespace morvane

#endif  // MORVANE_LINT_ENCODING_H
