// Wrapping and justification of texts.
#ifndef MORVANE_TEXT_WRAP_H
#define MORVANE_TEXT_WRAP_H

#include <cstddef>
#include <string>
#include <string_view>

namespace morvane {

// From this number of columns on, a line is not justified but cut into pieces of this length.
inline constexpr int WIDE_LINE = 150;

// Returns `message` wrapped into lines of `width` columns: each line is `prefix`, its text,
// `suffix` and a newline. Lines that end at a blank are justified; where there is a suffix, every
// line is padded to close at column `width`. The last line keeps its newlines but for one final
// one. Where the frames leave no column, the whole message is such a last line, unpadded.
//
// Lines of 150 columns and more are odd on purpose: each shows the message from its start up to its
// own end again, in pieces of 150, and where there is nothing to break at, a character is lost.
std::string wrap(std::string_view message, int width, std::string_view prefix,
                 std::string_view suffix);

}  // namespace morvane

#endif  // MORVANE_TEXT_WRAP_H
