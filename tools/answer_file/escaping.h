// How names and values stand in an answer file: bytes that would mean something else there are
// written as "%" and their number in two hexadecimal digits.
#ifndef MORVANE_ANSWER_FILE_ESCAPING_H
#define MORVANE_ANSWER_FILE_ESCAPING_H

#include <optional>
#include <string>
#include <string_view>

namespace morvane {

// Returns `text` as a value, which may hold blanks, though not around it.
std::string escape_value(std::string_view text);

// Returns `text` as one word of a value or as the title of a section: nothing in it separates.
std::string escape_word(std::string_view text);

// Returns `text` as a piece of a name whose pieces are separated by full stops.
std::string escape_name(std::string_view text);

// Returns what `written` says; nothing where a "%" is not followed by two hexadecimal digits, or
// by those of a NUL or a newline, which no answer holds.
std::optional<std::string> unescape(std::string_view written);

// The same for the name of a file, which may hold a newline.
std::optional<std::string> unescape_file_name(std::string_view written);

}  // namespace morvane

#endif  // MORVANE_ANSWER_FILE_ESCAPING_H
