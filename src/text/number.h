// Decimal numbers read from the start of a text.
#ifndef MORVANE_TEXT_NUMBER_H
#define MORVANE_TEXT_NUMBER_H

#include <optional>
#include <string_view>

namespace morvane {

// The white space that may stand before a number and that separates words everywhere.
inline constexpr std::string_view WHITE_SPACE = " \t\n\v\f\r";

// Returns the decimal number at the start of `value`: white space, a sign and digits. What follows
// the digits is ignored; a number that no int holds becomes the nearest int. Returns nothing where
// there are no digits.
std::optional<int> leading_number(std::string_view value);

// As `leading_number`, with 0 where there are no digits.
int number_or_zero(std::string_view value);

}  // namespace morvane

#endif  // MORVANE_TEXT_NUMBER_H
