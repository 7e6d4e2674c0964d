#include "host/board.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include "console/dialogue.h"
#include "console/message_format.h"
#include "console/message_table.h"
#include "console/printer.h"
#include "platform/number.h"

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

bool is_comment_start(int c) {
  return c == '#' || c == ' ' || c == '\t' || c == '\v' || c == '\r' || c == '\f';
}

// Takes the rest of the line, but no more than this: what is beyond counts as a line of its own.
constexpr int SKIPPED_COMMENT = 999;

void skip_comment(std::FILE* config) {
  for (int taken = 0; taken < SKIPPED_COMMENT; ++taken) {
    const int c = std::getc(config);
    if (c == '\n' || c == EOF) return;
  }
}

}  // namespace

void read_board_type() {
  std::FILE* config = std::fopen(trans_conf.c_str(), "r");
  if (config == nullptr) return;
  int c;
  do {
    c = std::getc(config);
    if (is_comment_start(c)) skip_comment(config);
  } while (c == '\n' || is_comment_start(c));
  std::ungetc(c, config);
  std::array<char, 10> board;
  if (std::fscanf(config, "%*s %9s", board.data()) == 1) Board = board.data();
  std::fclose(config);
}

void get_board_bus_type() {
  const bool has_default = put_default_bus();
  print("\n");
  const std::string proposal(has_default ? Board.view() : "");
  std::string answer;
  do {
    if (has_default) {
      print(fill("%s (%s) : ", {r[BUS_QUESTION], Board}));
    } else {
      print(fill("%s : ", {r[BUS_QUESTION]}));
    }
    answer = ask_string().value_or(proposal);
  } while (answer != r[BUS_1] && answer != r[BUS_2]);
  Board = answer;
}

}  // namespace morvane
