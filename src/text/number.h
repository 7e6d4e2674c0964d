// Decimal numbers read from the start of a text.
#ifndef MORVANE_TEXT_NUMBER_H
#define MORVANE_TEXT_NUMBER_H

#include <optional>
#include <string_view>

namespace morvane {

inline constexpr std::string_view DIGITS = "0123456789";

// Returns the decimal number at the start of `value`: white space, a sign and digits. What follows
// the digits is ignored; a number that no int holds becomes the nearest int. Returns nothing where
// there are no digits.
std::optional<int> leading_number(std::string_view value);

// Tells whether a text is digits and nothing else, at least one.
bool is_digits(std::string_view text);

// As `leading_number`, with 0 where there are no digits.
int number_or_zero(std::string_view value);

// Takes the next number off a list of numbers and returns it, as `leading_number` does: moves
// `list` on to the next of `separators` and from there to the next digit. Thus only the first
// number of a list can have a sign, and a separator before the first number makes it count twice.
std::optional<int> take_number(std::string_view& list, std::string_view separators);

}  // namespace morvane

#endif  // MORVANE_TEXT_NUMBER_H
