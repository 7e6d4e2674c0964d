// Words between separators.
#ifndef MORVANE_TEXT_WORDS_H
#define MORVANE_TEXT_WORDS_H

#include <string_view>
#include <vector>

namespace morvane {

// Returns the non-empty pieces of `value` between characters of `separators`, in order, as views
// of `value`.
std::vector<std::string_view> split_words(std::string_view value, std::string_view separators);

}  // namespace morvane

#endif  // MORVANE_TEXT_WORDS_H
