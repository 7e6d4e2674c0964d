// Wrapping and justification of texts.
#ifndef MORVANE_CONSOLE_WRAP_H
#define MORVANE_CONSOLE_WRAP_H

#include <cstddef>
#include <string>
#include <string_view>

namespace morvane {

// The width from which on a line no longer fits the line buffer of the printer.
inline constexpr int WIDE_LINE = 150;

// Returns `message` wrapped into lines of `width` columns: each line is `prefix`, its text,
// `suffix` and a newline. Lines that end at a blank are justified; where there is a suffix, every
// line is padded to close at column `width`. The last line keeps its newlines but for one final
// one. Where the frames leave no column, the whole message is such a last line, unpadded.
std::string wrap(std::string_view message, int width, std::string_view prefix,
                 std::string_view suffix);

}  // namespace morvane

#endif  // MORVANE_CONSOLE_WRAP_H
