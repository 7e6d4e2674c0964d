#include "messages/table.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "console/leave.h"
#include "console/printer.h"
#include "support/child.h"

namespace morvane {
namespace {

// Returns the table that a message file with `content` gives.
std::unique_ptr<message_table> load(std::string_view content) {
  auto table = std::make_unique<message_table>();
  const scratch_directory here;
  write_file("messages", content);
  input_file file("messages");
  read_messages(file, *table);
  return table;
}

std::string message(std::string_view content, int number) {
  return std::string((*load(content))[number]);
}

std::string filler(int number) {
  return "No resource #" + std::to_string(number) + "!\n";
}

// Returns whether `content` defines no message at all.
bool defines_nothing(std::string_view content) {
  const auto table = load(content);
  for (int number = 0; number < MESSAGE_COUNT; ++number) {
    if ((*table)[number] != filler(number)) return false;
  }
  return true;
}

// Loads "./morvane.rsc" of the current directory; returns the flag and one message.
outcome load_resource(int number) {
  return in_child("", [=] {
    rscok = false;
    read_resource();
    return std::to_string(rscok) + " " + std::string(r[number]);
  });
}

struct line {
  std::string_view content;
  int number;
  std::string text;
};

void expect_messages(std::initializer_list<line> lines) {
  for (const line& each : lines) {
    EXPECT_EQ(message(each.content, each.number), each.text) << each.content;
  }
}

TEST(MessageFile, AnEmptyOneGivesFillers) {
  EXPECT_TRUE(defines_nothing(""));
  EXPECT_EQ((*load(""))[0], "No resource #0!\n");
  EXPECT_EQ((*load(""))[499], "No resource #499!\n");
}

TEST(MessageFile, TheTextStartsInColumn5) {
  expect_messages({
      {"007 Hello|\n", 7, "Hello"},
      {"007 Hello  |\n", 7, "Hello  "},
      {"007 |\n", 7, ""},
      {"007 \n", 7, ""},
      {"007xHello\n", 7, "Hello"},
      {"12  text\n", 12, "text"},
      {"1 text\n", 1, "xt"},
      {" 12 text\n", 12, "text"},
      {"007   two blanks\n", 7, "  two blanks"},
      {"007 last line", 7, "last line"},
      {"499 last number\n", 499, "last number"},
  });
}

TEST(MessageFile, TheNumberIsReadFromTheStartOfTheLineHoweverLong) {
  expect_messages({
      {"00030x\n", 30, "0x"},
      {"  0123x\n", 123, "23x"},
      {"+7  x\n", 7, "x"},
      {"\t7  x\n", 7, "x"},
      {"7a  x\n", 7, "x"},
  });
}

TEST(MessageFile, OtherLinesAreSkipped) {
  for (const std::string_view content :
       {"\n", "0   zero\n", "000 zero\n", "500 beyond\n", "-3  negative\n", "# comment\n",
        "word text\n", "007\n", "7\n", "12345 x\n", "99999999999 x\n", "\\07 x\n"}) {
    EXPECT_TRUE(defines_nothing(content)) << content;
  }
}

TEST(MessageFile, EscapesStandForOneByte) {
  expect_messages({
      {"009 a\\tb\\nc\n", 9, "a\tb\nc"},
      {"009 \\a\n", 9, "a"},
      {"009 \\n\\t\\r\\f\\v\\b\\e\\?\n", 9, "\n\t\r\f\v\b\033\177"},
      {"009 \\\\n\n", 9, "\\n"},
      {"009 \\x\\0\\N\\\"\n", 9, "x0N\""},
      {"009 \\|x\n", 9, "|x"},
  });
}

TEST(MessageFile, ABackslashAtTheEndEndsTheMessage) {
  expect_messages({{"009 ab\\\n", 9, "ab"}, {"009 \\\n", 9, ""}});
}

TEST(MessageFile, NoMessageEndsInABar) {
  expect_messages({
      {"009 a|\n", 9, "a"},
      {"009 a\\|\n", 9, "a"},
      {"009 a||\n", 9, "a|"},
      {"009 a|b\n", 9, "a|b"},
      {"009 a|\\\n", 9, "a"},  // the lone backslash stores nothing
      {"009 a|\\n\n", 9, "a|\n"},
  });
}

TEST(MessageFile, ACarriageReturnBelongsToTheText) {
  expect_messages({{"009 a\r\n", 9, "a\r"}, {"009 a|\r\n", 9, "a|\r"}});
}

TEST(MessageFile, ATextEndsAtItsFirstNul) {
  EXPECT_EQ(message(std::string_view("009 ab\0cd\n010 x\n", 16), 9), "ab");
  EXPECT_EQ(message(std::string_view("009 ab\0cd\n010 x\n", 16), 10), "x");
}

TEST(MessageFile, ALaterLineReplacesAnEarlierOne) {
  expect_messages(
      {{"020 a long first text\n020 second\n", 20, "second"}, {"020 a\n020 \n", 20, ""}});
}

TEST(MessageFile, ATextIsCutAt150RawCharacters) {
  const std::string a149(149, 'a');
  expect_messages({
      {"030 " + a149 + "\n", 30, a149},
      {"030 " + a149 + "b\n031 x\n", 30, a149 + "bx"},
      {"030 " + a149 + "bc\n", 30, a149 + "b"},
      {"030 " + std::string(160, 'a') + "\n", 30, a149 + "a"},
      // Before the escapes count, so that one may be cut in two.
      {"030 " + a149 + "\\n\n", 30, a149},
      {"030 " + a149 + "|\n", 30, a149},
  });
  std::string escapes;
  for (int i = 0; i < 75; ++i) escapes += "\\n";
  expect_messages({{"030 " + escapes + "x\n", 30, std::string(75, '\n')}});
}

TEST(MessageFile, A150ByteTextEmptiesItsFollower) {
  const std::string wide = "030 " + std::string(150, 'a') + "\n";
  const std::string narrow = "030 " + std::string(149, 'a') + "\n";
  EXPECT_EQ(message("031 x\n" + narrow, 31), "x");
  EXPECT_EQ(message("031 x\n" + wide, 31), "");
  EXPECT_EQ(message(wide, 31), "");
  EXPECT_EQ(message("031 x\n" + wide, 30), std::string(150, 'a'));
}

TEST(MessageFile, A150ByteTextReadsOnThroughAFollowerDefinedLater) {
  const std::string wide = "030 " + std::string(150, 'a') + "\n031 later\n";
  EXPECT_EQ(message(wide, 31), "later");
  EXPECT_EQ(message(wide, 30), std::string(150, 'a') + "later");
}

TEST(MessageFile, A150ByteTextFitsIntoTheLastSlot) {
  EXPECT_EQ(message("499 " + std::string(150, 'a') + "\n", 499), std::string(150, 'a'));
}

TEST(MessageFile, ALineIsReadInPiecesOf299Bytes) {
  const std::string first = "030 " + std::string(295, 'a');
  ASSERT_EQ(first.size(), 299U);
  EXPECT_EQ(message(first + "020 piece\n", 20), "piece");
  EXPECT_EQ(message(first + "020 piece\n", 30), std::string(150, 'a'));
  EXPECT_EQ(message(first + "a020 piece\n", 20), filler(20));
  EXPECT_EQ(message(first.substr(0, 298) + "020 piece\n", 20), "iece");
  EXPECT_EQ(message(first + "\n020 next\n", 20), "next");
}

TEST(Resource, IsReadFromTheCurrentDirectory) {
  const scratch_directory here;
  write_file("morvane.rsc", "# messages\n299 Bye\n");
  const outcome seen = load_resource(299);
  EXPECT_EQ(seen.result, "1 Bye");
  EXPECT_EQ(seen.written(), "");
}

TEST(Resource, ThatIsEmptyCountsAsRead) {
  const scratch_directory here;
  write_file("morvane.rsc", "");
  EXPECT_EQ(load_resource(17).result, "1 No resource #17!\n");
}

TEST(Resource, ThatIsMissingIsNotLoaded) {
  const scratch_directory here;
  const outcome seen = in_child("", [] {
    rscok = false;
    return std::to_string(read_resource()) + std::to_string(rscok);
  });
  EXPECT_EQ(seen.result, "00");
  EXPECT_EQ(seen.written(), "");
}

TEST(Resource, AReadErrorEndsReading) {
  const scratch_directory here;
  std::filesystem::create_directory("morvane.rsc");
  EXPECT_EQ(load_resource(17).result, "1 No resource #17!\n");
}

TEST(Resource, AWideRulerMakesTheScreenAsWideAsItReads) {
  const scratch_directory here;
  write_file("morvane.rsc", "010 " + std::string(150, '-') + "\n011 title\n");
  const outcome seen = in_child("", [] {
    read_resource();
    return std::to_string(screen_width());
  });
  EXPECT_EQ(seen.result, "155");
}

TEST(MessageFile, CountsUpToAnErrorInReading) {
  const scratch_directory here;
  ASSERT_EQ(mkfifo("messages", 0600), 0);
  // A pipe whose writer has written and not closed: behind its bytes, reading fails.
  const int pipe_end = open("messages", O_RDWR | O_CLOEXEC);
  ASSERT_EQ(write(pipe_end, "020 whole\n021 unfin", 19), 19);
  auto table = std::make_unique<message_table>();
  input_file file("messages");
  read_messages(file, *table);
  close(pipe_end);
  EXPECT_EQ((*table)[20], "whole");
  EXPECT_EQ((*table)[21], "unfin");
  EXPECT_EQ((*table)[22], filler(22));
}

TEST(MessageFile, OfTheNullDeviceIsEmpty) {
  const scratch_directory here;
  std::filesystem::create_symlink("/dev/null", "morvane.rsc");
  EXPECT_EQ(load_resource(20).result, "1 " + filler(20));
}

}  // namespace
}  // namespace morvane
