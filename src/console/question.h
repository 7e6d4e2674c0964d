// Questions and answers: the only way to the operator's answers.
//
// A question is a value that says what is asked, besides the text that the operator reads: whoever
// answers in the operator's place can tell the questions apart in every language.
//
// Everywhere the end of the answers means what the quit letter means: a last line without its
// newline is no answer.
#ifndef MORVANE_CONSOLE_QUESTION_H
#define MORVANE_CONSOLE_QUESTION_H

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "catalogue/product.h"
#include "messages/numbers.h"

namespace morvane {

struct question {
  message_number number{};  // of the message that asks, which no two kinds of questions share
  std::string text{};       // what the operator reads

  // What it is about, as far as it is about any.
  const morvane::product* product = nullptr;
  std::string_view part{};
  std::string_view category{};  // of the product that the part needs
  const morvane::product* candidate = nullptr;
  std::string_view directory{};
  std::string_view proposal{};  // what Enter alone takes
  std::optional<int> patch{};   // level that is needed
};

// Returns the question whose text is its message as it stands.
question plain_question(message_number number);

// The bytes kept of an answer.
inline constexpr std::size_t LONGEST_ANSWER = 1023;

// Asks until the operator answers with the yes letter or Enter alone (returns true) or with the no
// letter (returns false). The quit letter ends the program.
bool choose_y_or_n(const question& asked);

// Prints the text of `asked`, as it stands, and returns the answer as `ask_string` does.
std::optional<std::string> ask(const question& asked, std::size_t longest = LONGEST_ANSWER);

// Returns the next line of the answers without its newline, cut to `longest` bytes and at a NUL;
// nothing where it is empty: what Enter alone means belongs to each question. The quit letter alone
// ends the program. Prints nothing: the caller has asked.
std::optional<std::string> ask_string(const question& asked, std::size_t longest = LONGEST_ANSWER);

// Prints the text of `asked`, reads one character and drops it.
void wait_for_enter(const question& asked);

// Returns the next byte (0 to 255) of the answer to a question, or a negative number where there
// are no more answers.
using answer_source = std::function<int(const question& asked)>;

// Returns the operator's answers: they come from standard input, each byte after everything printed
// so far has reached the screen.
answer_source answers_of_operator();

// Takes the answers from `source` from now on. Until then the operator gives them.
void take_answers_from(answer_source source);

}  // namespace morvane

#endif  // MORVANE_CONSOLE_QUESTION_H
