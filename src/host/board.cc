#include "host/board.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "console/printer.h"
#include "console/question.h"
#include "messages/table.h"
#include "platform/input_file.h"
#include "text/format.h"
#include "text/number.h"
#include "text/white_space.h"

namespace morvane {

text<60> trans_conf;
text<10> Board;

namespace {

// Tells whether `Board` begins as the board family does, in as many characters as `length` says.
bool is_of_family(message_number family, message_number length) {
  const auto count = static_cast<std::size_t>(std::max(number_or_zero(r[length]), 0));
  return Board.view().substr(0, count) == r[family].substr(0, count);
}

// Puts the bus that `Board` has by default into `Board`; returns false where there is none.
bool put_default_bus() {
  if (Board == r[BOARD_OF_BUS_1]) {
    Board = r[BUS_1];
  } else if (is_of_family(BOARD_FAMILY_1, BOARD_FAMILY_1_LENGTH) || Board == r[BOARD_OF_BUS_2A] ||
             Board == r[BOARD_OF_BUS_2B] || is_of_family(BOARD_FAMILY_2, BOARD_FAMILY_2_LENGTH)) {
    Board = r[BUS_2];
  } else {
    return false;
  }
  return true;
}

// What is beyond counts as a line of its own.
constexpr std::size_t SKIPPED_COMMENT = 999;

// Tells whether a line of the configuration file that begins with `c` is empty or a comment.
bool is_skipped_line(int c) {
  return c == '#' || is_white_space(c);
}

// Takes a word off `file`, white space before it included.
std::string take_word(input_file& file) {
  while (is_white_space(file.peek())) file.get();
  std::string word;
  file.read_word(word);
  return word;
}

}  // namespace

void read_board_type() {
  input_file config(trans_conf.c_str());
  while (is_skipped_line(config.peek())) {
    if (config.get() != '\n') config.skip_line(SKIPPED_COMMENT);
  }
  take_word(config);
  const std::string board = take_word(config);
  if (!board.empty()) Board = board;
}

void get_board_bus_type() {
  const bool has_default = put_default_bus();
  print("\n");
  const std::string proposal(has_default ? Board.view() : "");
  const question asked = {.number = BUS_QUESTION,
                          .text = has_default ? fill("%s (%s) : ", {r[BUS_QUESTION], Board})
                                              : fill("%s : ", {r[BUS_QUESTION]}),
                          .proposal = proposal};
  std::string answer;
  do {
    answer = ask(asked).value_or(proposal);
  } while (answer != r[BUS_1] && answer != r[BUS_2]);
  Board = answer;
}

}  // namespace morvane
