#include "text/wrap.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

struct wrapping {
  std::string_view message;
  std::string_view lines;
};

// Wraps each message into 10 columns without frames.
void expect_lines(std::initializer_list<wrapping> wrappings) {
  for (const wrapping& each : wrappings) {
    EXPECT_EQ(wrap(each.message, 10, "", ""), each.lines) << each.message;
  }
}

std::string of(std::size_t count, char c) {
  return std::string(count, c);
}

TEST(Wrap, ATextThatFitsIsOneLine) {
  expect_lines({
      {"", "\n"},
      {"short", "short\n"},
      {"0123456789", "0123456789\n"},
      {"a   b", "a   b\n"},
  });
}

TEST(Wrap, BreaksAtTheLastBlankThatFits) {
  expect_lines({
      {"0123456789 ab", "0123456789\nab\n"},
      {"0123 5678 abc", "0123  5678\nabc\n"},
      {"0123456789 ", "0123456789\n\n"},
      {"01234 678\t0 b", "01234\n678\t0 b\n"},
  });
}

TEST(Wrap, JustifiesWithTheWiderGapsLast) {
  expect_lines({
      {"aaa bb cc dddd", "aaa bb  cc\ndddd\n"},
      {"a b c d eeeeeee", "a  b  c  d\neeeeeee\n"},
      {"a b c eeeeeeeee", "a   b    c\neeeeeeeee\n"},
      {"aa bb eeeeeeeee", "aa      bb\neeeeeeeee\n"},
      {"aaaa eeeeeeeeee", "aaaa\neeeeeeeeee\n"},
      {"a  b ccccccccc", "a        b\nccccccccc\n"},
      {" a bb ccccccccc", "   a    bb\nccccccccc\n"},
  });
}

TEST(Wrap, CutsALongWordWithoutLosingACharacter) {
  expect_lines({
      {"0123456789a", "0123456789\na\n"},
      {"0123456789abcdefghijK", "0123456789\nabcdefghij\nK\n"},
  });
}

TEST(Wrap, ANewlineEndsTheLineWithoutJustification) {
  expect_lines({
      {"a b\ncc dd ee ff", "a b\ncc  dd  ee\nff\n"},
      {"0123456789\nab", "0123456789\nab\n"},
      {"a b\nc d\nefghijklm", "a b\nc d\nefghijklm\n"},
      {"a b c\nd eeeeeee", "a b c\nd eeeeeee\n"},
  });
}

TEST(Wrap, TheLastLineIsPrintedAsItIs) {
  expect_lines({
      {"a\nb\nc", "a\nb\nc\n"},
      {"a\n", "a\n"},
      {"a\n\n", "a\n\n"},
      {"\n", "\n"},
      {"a b  ", "a b  \n"},
  });
}

TEST(Wrap, ATrailingNewlineAtTheLimitIsABreak) {
  expect_lines({
      {"012345678\n", "012345678\n"},
      {"0123456789\n", "0123456789\n\n"},
      {"0123456789a\n", "0123456789\na\n"},
  });
}

TEST(Wrap, FramesEachLineAndPadsItWhereThereIsASuffix) {
  EXPECT_EQ(wrap("aaa bb cc dddd", 14, "[ ", " ]"), "[ aaa bb  cc ]\n[ dddd       ]\n");
  EXPECT_EQ(wrap("ab\ncd efgh ijkl", 14, "[ ", " ]"),
            "[ ab         ]\n[ cd    efgh ]\n"
            "[ ijkl       ]\n");
  EXPECT_EQ(wrap("0123456789abcde", 14, "[ ", " ]"), "[ 0123456789 ]\n[ abcde      ]\n");
  EXPECT_EQ(wrap("", 14, "[ ", " ]"), "[            ]\n");
  EXPECT_EQ(wrap("\n", 14, "[ ", " ]"), "[            ]\n");
}

TEST(Wrap, PadsNothingWithoutASuffix) {
  EXPECT_EQ(wrap("aaa bb cc dddd", 12, "> ", ""), "> aaa bb  cc\n> dddd\n");
  EXPECT_EQ(wrap("\n", 12, "> ", ""), "> \n");
}

TEST(Wrap, ANewlineInTheLastLineIsPaddedOverButNotFramed) {
  EXPECT_EQ(wrap("a\nb", 14, "[ ", " ]"), "[ a\nb        ]\n");
}

TEST(Wrap, OneColumnIsEnough) {
  EXPECT_EQ(wrap("ab c", 1, "", ""), "a\nb\nc\n");
  EXPECT_EQ(wrap("ab", 3, "<", ">"), "<a>\n<b>\n");
}

TEST(Wrap, WithoutAColumnTheTextIsALastLineUnpadded) {
  for (const int width : {2, 1, 0, -1}) {
    EXPECT_EQ(wrap("a b\nlong text\n", width, "<", ">"), "<a b\nlong text>\n") << width;
  }
  EXPECT_EQ(wrap("two words", 0, "", ""), "two words\n");
  EXPECT_EQ(wrap("\n", 0, "", ""), "\n");
  EXPECT_EQ(wrap("", 0, "<", ">"), "<>\n");
}

TEST(Wrap, JustifiesUpTo149Columns) {
  EXPECT_EQ(wrap("a b " + of(149, 'c'), 149, "", ""),
            "a" + of(147, ' ') + "b\n" + of(149, 'c') + "\n");
  EXPECT_EQ(wrap("a b " + of(150, 'c'), 150, "", ""), "a b\n" + of(150, 'c') + "\n");
}

TEST(Wrap, AWideLineStartsAtTheVeryStartOfTheTextAgain) {
  const std::string text = of(100, 'a') + " " + of(100, 'b') + " " + of(100, 'c');
  EXPECT_EQ(wrap(text, 150, "", ""),
            of(100, 'a') + "\n" + of(100, 'a') + " " + of(49, 'b') + "\n" + of(100, 'c') + "\n");
}

TEST(Wrap, AWideLineIsPrintedInPiecesOf150PaddedToTheWholeWidth) {
  const std::string text = of(100, 'a') + " " + of(95, 'b') + " " + of(100, 'c');
  EXPECT_EQ(wrap(text, 202, "<", ">"), "<" + of(100, 'a') + " " + of(49, 'b') + of(50, ' ') +
                                           ">\n<" + of(46, 'b') + of(154, ' ') + ">\n<" +
                                           of(100, 'c') + of(100, ' ') + ">\n");
}

TEST(Wrap, AWideLineCutHardSkipsACharacter) {
  EXPECT_EQ(wrap(of(149, 'a') + of(51, 'b'), 149, "", ""),
            of(149, 'a') + "\n" + of(51, 'b') + "\n");
  EXPECT_EQ(wrap(of(150, 'a') + "x" + of(50, 'b'), 150, "", ""),
            of(150, 'a') + "\n" + of(50, 'b') + "\n");
}

TEST(Wrap, TheRestOfAWideTextIsOneLine) {
  EXPECT_EQ(wrap(of(300, 'a'), 300, "", ""), of(300, 'a') + "\n");
  EXPECT_EQ(wrap(of(160, 'a') + " b", 202, "<", ">"),
            "<" + of(160, 'a') + " b" + of(38, ' ') + ">\n");
  EXPECT_EQ(wrap("a\nb\n", 150, "", ""), "a\nb\n");
}

}  // namespace
}  // namespace morvane
