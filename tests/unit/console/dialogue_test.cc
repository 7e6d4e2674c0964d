#include "console/dialogue.h"

#include <gtest/gtest.h>

#include "console/leave.h"
#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

outcome choose(std::string_view typed) {
  use_test_messages();
  return in_child(typed, [] { return choose_y_or_n("Sure?") ? "yes" : "no"; });
}

outcome ask(std::string_view typed, std::size_t longest = LONGEST_ANSWER) {
  use_test_messages();
  return in_child(typed, [=] { return ask_string(longest).value_or("(nothing)"); });
}

TEST(YesNoQuestion, EnterAloneMeansYes) {
  const outcome seen = choose("\n");
  EXPECT_EQ(seen.result, "yes");
  EXPECT_EQ(seen.out, "Sure? <35>\n");
}

TEST(YesNoQuestion, LettersCountInBothCases) {
  EXPECT_EQ(choose("y\n").result, "yes");
  EXPECT_EQ(choose("Y\n").result, "yes");
  EXPECT_EQ(choose("n\n").result, "no");
  EXPECT_EQ(choose("N\n").result, "no");
}

TEST(YesNoQuestion, AWholeWordIsAskedAgain) {
  const outcome seen = choose("yes\nn\n");
  EXPECT_EQ(seen.result, "no");
  EXPECT_EQ(seen.out, "Sure? <35>\n<34>Sure? <35>\n");
}

TEST(YesNoQuestion, TheQuitLetterEndsTheProgram) {
  const outcome seen = choose("Q\n");
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
  EXPECT_EQ(seen.out, "Sure? <35>\n<299>");
}

TEST(YesNoQuestion, TheEndOfInputQuits) {
  EXPECT_EQ(choose("").out, "Sure? <35>\n<299>");
  EXPECT_EQ(choose("y").status, 1);
  EXPECT_EQ(choose("n").out, "Sure? <35>\n<299>");
}

TEST(YesNoQuestion, ANulIsACharacterAndNoAnswer) {
  EXPECT_EQ(choose(std::string_view("\0\n\n", 3)).out, "Sure? <35>\n<34>Sure? <35>\n");
}

TEST(YesNoQuestion, AMissingLetterMatchesNothing) {
  use_test_messages();
  set_message(ANSWER_LETTERS, "y");
  const outcome seen = in_child(std::string_view("n\nq\n\0\ny\n", 8),
                                [] { return choose_y_or_n("?") ? "yes" : "no"; });
  EXPECT_EQ(seen.result, "yes");
  EXPECT_EQ(seen.out, "? <35>\n<34>? <35>\n<34>? <35>\n<34>? <35>\n");
}

TEST(YesNoQuestion, TheQuestionIsFilledIntoItsFormatAndWrapped) {
  use_test_messages();
  set_message(YES_NO_QUESTION, "[%s] %s (%s) %s");
  set_message(RULER, "----------");
  const outcome seen = in_child("\n", [] { return choose_y_or_n("Delete 100%s?") ? "yes" : ""; });
  EXPECT_EQ(seen.result, "yes");
  EXPECT_EQ(seen.out, "[]  Delete\n100%s?\n(<35>) \n");
}

TEST(YesNoQuestion, TheReplyToAVoidAnswerIsPrintedAsItIs) {
  use_test_messages();
  set_message(CONFIRM_SELECTION, "100%s\n");
  const outcome seen = in_child("x\nyy\n\n", [] { return choose_y_or_n("?") ? "yes" : "no"; });
  EXPECT_EQ(seen.out, "? <35>\n100%s\n? <35>\n100%s\n? <35>\n");
}

TEST(YesNoQuestion, OfEqualLettersTheFirstCounts) {
  use_test_messages();
  set_message(ANSWER_LETTERS, "AAA");
  EXPECT_EQ(in_child("a\n", [] { return choose_y_or_n("?") ? "yes" : "no"; }).result, "yes");
  set_message(ANSWER_LETTERS, "ABB");
  EXPECT_EQ(in_child("b\n", [] { return choose_y_or_n("?") ? "yes" : "no"; }).result, "no");
}

TEST(Answer, IsTheLineWithoutItsNewline) {
  EXPECT_EQ(ask("two words\nrest\n").result, "two words");
  EXPECT_EQ(ask("two words\n").out, "");
}

TEST(Answer, EnterAloneIsNothing) {
  EXPECT_EQ(ask("\n").result, "(nothing)");
}

TEST(Answer, TheQuitLetterAloneEndsTheProgram) {
  EXPECT_FALSE(ask("q\n").returned);
  EXPECT_FALSE(ask("Q\n").returned);
  EXPECT_EQ(ask("q \n").result, "q ");
  EXPECT_EQ(ask("quit\n").result, "quit");
}

TEST(Answer, TheEndOfInputQuits) {
  EXPECT_FALSE(ask("").returned);
  EXPECT_FALSE(ask("no newline").returned);
  EXPECT_EQ(ask("no newline").out, "<299>");
}

TEST(Answer, KeepsWhatFitsAndDropsTheRestOfTheLine) {
  const std::string line(1023, 'a');
  EXPECT_EQ(ask(line + "\n").result, line);
  EXPECT_EQ(ask(line + "b\n").result, line);
  EXPECT_EQ(ask("abcdef\n", 3).result, "abc");
  use_test_messages();
  const outcome seen = in_child("abcdef\nnext\n", [] {
    ask_string(3);
    return *ask_string();
  });
  EXPECT_EQ(seen.result, "next");
}

TEST(Answer, EndsAtANulThatCountsAsTyped) {
  EXPECT_EQ(ask(std::string_view("ab\0c\n", 5)).result, "ab");
  EXPECT_EQ(ask(std::string_view("\0\n", 2)).result, "");
  EXPECT_EQ(ask(std::string_view("q\0\n", 3)).result, "q");
}

TEST(SingleCharacter, LeavesTheRestOfTheLine) {
  use_test_messages();
  const outcome seen = in_child("xrest\n", [] {
    read_character();
    return *ask_string();
  });
  EXPECT_EQ(seen.result, "rest");
}

TEST(SingleCharacter, TheEndOfInputQuits) {
  use_test_messages();
  const outcome seen = in_child("", [] {
    read_character();
    return "";
  });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
}

TEST(Farewell, IsBuiltInUntilTheMessagesAreLoaded) {
  use_test_messages();
  const outcome seen = in_child("", []() -> std::string {
    rscok = false;
    return_code = 7;
    quit();
  });
  EXPECT_EQ(seen.out, "\n\n*** BYE! ***\n\n\n");
  EXPECT_EQ(seen.status, 7);
}

}  // namespace
}  // namespace morvane
