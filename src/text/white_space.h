// What counts as white space.
#ifndef MORVANE_TEXT_WHITE_SPACE_H
#define MORVANE_TEXT_WHITE_SPACE_H

#include <string_view>

namespace morvane {

// White space that does not end a line.
inline constexpr std::string_view BLANKS = " \t\v\f\r";
inline constexpr std::string_view WHITE_SPACE = " \t\v\f\r\n";

// Tell whether the byte `c` is one of them. The end of a file, as `input_file` gives it, is none.
// They are asked for every byte of a description, and so do not search those lists.
constexpr bool is_white_space(int c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool is_blank(int c) {
  return is_white_space(c) && c != '\n';
}

}  // namespace morvane

#endif  // MORVANE_TEXT_WHITE_SPACE_H
