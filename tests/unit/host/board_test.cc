#include "host/board.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

// Reads the board type from a file with that content; "old" is what `Board` holds before.
std::string board_of(std::string_view content) {
  const scratch_directory directory;
  write_file("board.conf", content);
  return in_child("",
                  [] {
                    trans_conf = "board.conf";
                    Board = "old";
                    read_board_type();
                    return std::string(Board.view());
                  })
      .result;
}

outcome choose_bus(std::string_view board, std::string_view typed) {
  return in_child(typed, [&] {
    Board = board;
    get_board_bus_type();
    return std::string(Board.view());
  });
}

TEST(BoardType, IsTheSecondWordOfTheFirstLineThatCounts) {
  const struct {
    std::string_view content;
    const char* board;
  } cases[] = {
      {"# a comment\n\n indented line\nboard cpu40\n", "cpu40"},
      {"board cpu40", "cpu40"},
      {"board\tcpu40 more words\n", "cpu40"},
      {"board\ncpu40\n", "cpu40"},
      {"\tx y\n\vx y\n\rx y\n\fx y\n x y\n#x y\nboard cpu40\n", "cpu40"},
      {"\n\n\nboard cpu40\nboard cpu60\n", "cpu40"},
      {"board#1 cpu40\n", "cpu40"},
      {"board 123456789\n", "123456789"},
      {"board 1234567890\n", "123456789"},
      {"board\n", "old"},
      {"# only a comment", "old"},
      {"", "old"},
  };
  for (const auto& [content, board] : cases) EXPECT_EQ(board_of(content), board) << content;
}

TEST(BoardType, TheLineOfACommentIsReadUpTo999Characters) {
  const std::string content = "first\nboard cpu40\n";
  EXPECT_EQ(board_of("#" + std::string(998, 'x') + "\n" + content), "board");
  EXPECT_EQ(board_of("#" + std::string(999, 'x') + "\n" + content), "board");
  EXPECT_EQ(board_of("#" + std::string(999, 'x') + "left over\n" + content), "over");
  // The 1000th already counts: one more skipped, and the blank behind it would begin a comment.
  EXPECT_EQ(board_of("#" + std::string(999, 'x') + "a b\n" + content), "b");
}

TEST(BoardType, StaysAsItWasWithoutAFile) {
  const outcome seen = in_child("", [] {
    trans_conf = "/nonexistent/board.conf";
    Board = "old";
    read_board_type();
    return std::string(Board.view());
  });
  EXPECT_EQ(seen.result, "old");
  EXPECT_EQ(seen.written(), "");
}

TEST(BusType, EnterAloneTakesTheDefaultOfTheBoard) {
  use_test_messages();
  set_message(BOARD_FAMILY_1, "sol1");
  set_message(BOARD_FAMILY_2, "lun2");
  const struct {
    const char* board;
    const char* bus;
  } cases[] = {
      {"<62>", "busA"}, {"sol1", "busB"}, {"sol1x", "busB"},
      {"<66>", "busB"}, {"<67>", "busB"}, {"lun2b", "busB"},
  };
  for (const auto& [board, bus] : cases) {
    const outcome seen = choose_bus(board, "\n");
    EXPECT_EQ(seen.result, bus) << board;
    EXPECT_EQ(seen.out, "\n<71> (" + std::string(bus) + ") : ");
  }
}

TEST(BusType, ComparesTheGivenNumberOfCharactersOfBothTexts) {
  use_test_messages();
  set_message(BOARD_FAMILY_1, "sol123");
  EXPECT_EQ(choose_bus("sol19", "\n").result, "busB");
  set_message(BOARD_FAMILY_1_LENGTH, "5");
  EXPECT_EQ(choose_bus("sol19", "busA\n").out, "\n<71> : ");
  EXPECT_EQ(choose_bus("sol12x", "\n").result, "busB");
  set_message(BOARD_FAMILY_1_LENGTH, "0");
  EXPECT_EQ(choose_bus("anything", "\n").result, "busB");
}

TEST(BusType, AnUnknownBoardHasNoDefault) {
  use_test_messages();
  const outcome seen = choose_bus("sol", "\nbusA\n");
  EXPECT_EQ(seen.result, "busA");
  EXPECT_EQ(seen.out, "\n<71> : <71> : ");
}

TEST(BusType, EnterAloneIsABusWhereItsMessageIsEmpty) {
  use_test_messages();
  set_message(BUS_1, "");
  const outcome seen = choose_bus("unknown", "\n");
  EXPECT_TRUE(seen.returned);
  EXPECT_EQ(seen.result, "");
}

TEST(BusType, ADefaultOfMoreThanNineCharactersIsCutAndSoNoAnswer) {
  use_test_messages();
  const std::string cut = "\n<71> (busOfBoar) : ";
  set_message(BUS_1, "busOfBoar");
  EXPECT_EQ(choose_bus("<62>", "\n").out, cut);
  set_message(BUS_1, "busOfBoard");
  const outcome seen = choose_bus("<62>", "\nbusOfBoar\nbusOfBoard\n");
  EXPECT_EQ(seen.out, cut + cut.substr(1) + cut.substr(1));
  EXPECT_EQ(seen.result, "busOfBoar");
}

TEST(BusType, OtherAnswersAreAskedAgain) {
  use_test_messages();
  const outcome seen = choose_bus("<62>", "busC\nbus\nBUSB\nbusB\n");
  EXPECT_EQ(seen.result, "busB");
  EXPECT_EQ(seen.out, "\n<71> (busA) : <71> (busA) : <71> (busA) : <71> (busA) : ");
}

TEST(BusType, TheEndOfInputQuits) {
  use_test_messages();
  const outcome seen = choose_bus("sol", "busC\n");
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.out, "\n<71> : <71> : <299>");
}

}  // namespace
}  // namespace morvane
