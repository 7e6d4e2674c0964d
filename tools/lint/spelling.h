// What a misspelt word may have been meant for.
#ifndef MORVANE_LINT_SPELLING_H
#define MORVANE_LINT_SPELLING_H

#include <cstddef>
#include <span>
#include <string_view>

namespace morvane {

// Returns the small letter of a capital, and everything else as it is.
char small(char c);

// Tells whether two words differ in nothing but capitals.
bool is_same_but_for_capitals(std::string_view a, std::string_view b);

// Returns how many letters have to be put in, left out, replaced, or exchanged with their neighbour
// to make `b` of `a`.
std::size_t edit_distance(std::string_view a, std::string_view b);

// Returns which of `words` is nearest to `word`: one that differs in capitals alone, else one
// within a distance of 2; empty where there is none.
std::string_view nearest(std::string_view word, std::span<const std::string_view> words);

}  // namespace morvane

#endif  // MORVANE_LINT_SPELLING_H
