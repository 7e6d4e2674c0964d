// Questions and answers: the only readers of standard input.
//
// Everywhere the end of standard input means what the quit letter means: a last line without its
// newline is no answer.
#ifndef MORVANE_CONSOLE_DIALOGUE_H
#define MORVANE_CONSOLE_DIALOGUE_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

// The bytes kept of an answer.
inline constexpr std::size_t LONGEST_ANSWER = 1023;

// Asks `question` until the operator answers with the yes letter or Enter alone (returns true) or
// with the no letter (returns false). The quit letter ends the program.
bool choose_y_or_n(std::string_view question);

// Returns the next line of standard input without its newline, cut to `longest` bytes and at a NUL;
// nothing where it is empty: what Enter alone means belongs to each question. The quit letter alone
// ends the program. Prints nothing: the caller has asked.
std::optional<std::string> ask_string(std::size_t longest = LONGEST_ANSWER);

// Reads one character of standard input and drops it.
void read_character();

}  // namespace morvane

#endif  // MORVANE_CONSOLE_DIALOGUE_H
