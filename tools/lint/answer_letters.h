// The letters of the answers, and the texts that name them.
#ifndef MORVANE_LINT_ANSWER_LETTERS_H
#define MORVANE_LINT_ANSWER_LETTERS_H

#include <cstddef>
#include <set>
#include <string_view>

namespace morvane {

// Tells whether all are letters, none like another; capitals count as small letters.
bool are_different_letters(std::string_view letters);

// Returns which of the answers, by their places in `letters`, `text` names: their letters stand in
// it as words; capitals count as small letters.
std::set<std::size_t> answers_named(std::string_view text, std::string_view letters);

}  // namespace morvane

#endif  // MORVANE_LINT_ANSWER_LETTERS_H
