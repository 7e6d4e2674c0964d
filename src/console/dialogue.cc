#include "console/dialogue.h"

#include <cstdio>

#include "console/leave.h"
#include "console/printer.h"
#include "messages/table.h"
#include "text/format.h"
#include "text/text.h"

namespace morvane {

namespace {

enum answer_letter : std::size_t { YES, NO, QUIT };

// Returns the next character of standard input, after everything printed so far has reached the
// screen.
char next_character() {
  std::fflush(stdout);
  const int c = std::getchar();
  if (c == EOF) quit();
  return static_cast<char>(c);
}

char to_lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Tells whether `c` is the letter of that answer. A letter that the message lacks matches nothing.
bool is_letter(char c, answer_letter letter) {
  const std::string_view letters = r[ANSWER_LETTERS];
  return letter < letters.size() && to_lower(c) == to_lower(letters[letter]);
}

struct line {
  std::string kept;
  std::size_t typed = 0;  // characters before the newline, NULs and dropped ones included
};

line read_line(std::size_t longest) {
  line result;
  for (char c; (c = next_character()) != '\n'; ++result.typed) {
    if (result.kept.size() < longest) result.kept += c;
  }
  return result;
}

void print_question(std::string_view question) {
  print_with_cr(fill(r[YES_NO_QUESTION], {"", question, r[ANSWER_HINT]}), screen_width());
}

}  // namespace

bool choose_y_or_n(std::string_view question) {
  for (;;) {
    print_question(question);
    const line answer = read_line(1);
    if (answer.typed == 0) return true;
    if (answer.typed == 1) {
      const char letter = answer.kept.front();
      if (is_letter(letter, YES)) return true;
      if (is_letter(letter, NO)) return false;
      if (is_letter(letter, QUIT)) quit();
    }
    print(r[CONFIRM_SELECTION]);  // one message serves as this reply and as that question
  }
}

std::optional<std::string> ask_string(std::size_t longest) {
  const line answer = read_line(longest);
  if (answer.typed == 0) return std::nullopt;
  if (answer.typed == 1 && is_letter(answer.kept.front(), QUIT)) quit();
  return std::string(until_nul(answer.kept));
}

void read_character() {
  next_character();
}

}  // namespace morvane
