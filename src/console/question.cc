#include "console/question.h"

#include <cstdio>
#include <utility>

#include "console/leave.h"
#include "console/printer.h"
#include "messages/table.h"
#include "text/format.h"
#include "text/text.h"

namespace morvane {

namespace {

enum answer_letter : std::size_t { YES, NO, QUIT };

int byte_of_operator(const question&) {
  std::fflush(stdout);
  return std::getchar();
}

// At run time, and not by linking something else: a rehearsal of a run and the run itself are the
// same program.
answer_source answers = byte_of_operator;

char next_character(const question& asked) {
  const int c = answers(asked);
  if (c < 0) quit();
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

line read_line(const question& asked, std::size_t longest) {
  line result;
  for (char c; (c = next_character(asked)) != '\n'; ++result.typed) {
    if (result.kept.size() < longest) result.kept += c;
  }
  return result;
}

}  // namespace

question plain_question(message_number number) {
  return {number, std::string(r[number])};
}

bool choose_y_or_n(const question& asked) {
  for (;;) {
    // Message files have a place in front of the question; it stays empty.
    print_with_cr(fill(YES_NO_QUESTION, "", asked.text, r[ANSWER_HINT]), screen_width());
    const line answer = read_line(asked, 1);
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

std::optional<std::string> ask(const question& asked, std::size_t longest) {
  print(asked.text);
  return ask_string(asked, longest);
}

std::optional<std::string> ask_string(const question& asked, std::size_t longest) {
  const line answer = read_line(asked, longest);
  if (answer.typed == 0) return std::nullopt;
  if (answer.typed == 1 && is_letter(answer.kept.front(), QUIT)) quit();
  return std::string(until_nul(answer.kept));
}

void wait_for_enter(const question& asked) {
  print(asked.text);
  // Not the whole line: what else stands there answers the next question, as morvane(1) warns.
  next_character(asked);
}

answer_source answers_of_operator() {
  return byte_of_operator;
}

void take_answers_from(answer_source source) {
  answers = std::move(source);
}

}  // namespace morvane
