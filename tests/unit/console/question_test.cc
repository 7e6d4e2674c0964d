#include "console/question.h"

#include <gtest/gtest.h>

#include "console/leave.h"
#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

outcome choose(std::string_view typed) {
  use_test_messages();
  return in_child(typed, [] { return choose_y_or_n({LAST_QUESTION, "Sure?"}) ? "yes" : "no"; });
}

outcome answer(std::string_view typed, std::size_t longest = LONGEST_ANSWER) {
  use_test_messages();
  return in_child(typed, [=] {
    return ask_string({BUS_QUESTION, ""}, longest).value_or("(nothing)");
  });
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
  const outcome seen = in_child(std::string_view("n\nq\n\0\ny\n", 8), [] {
    return choose_y_or_n({LAST_QUESTION, "?"}) ? "yes" : "no";
  });
  EXPECT_EQ(seen.result, "yes");
  EXPECT_EQ(seen.out, "? <35>\n<34>? <35>\n<34>? <35>\n<34>? <35>\n");
}

TEST(YesNoQuestion, TheQuestionIsFilledIntoItsFormatAndWrapped) {
  use_test_messages();
  set_message(YES_NO_QUESTION.number, "[%s] %s (%s) %s");
  set_message(RULER, "----------");
  const outcome seen = in_child("\n", [] {
    return choose_y_or_n({LAST_QUESTION, "Delete 100%s?"}) ? "yes" : "";
  });
  EXPECT_EQ(seen.result, "yes");
  EXPECT_EQ(seen.out, "[]  Delete\n100%s?\n(<35>) \n");
}

TEST(YesNoQuestion, TheReplyToAVoidAnswerIsPrintedAsItIs) {
  use_test_messages();
  set_message(CONFIRM_SELECTION, "100%s\n");
  const outcome seen = in_child("x\nyy\n\n", [] {
    return choose_y_or_n({LAST_QUESTION, "?"}) ? "yes" : "no";
  });
  EXPECT_EQ(seen.out, "? <35>\n100%s\n? <35>\n100%s\n? <35>\n");
}

TEST(YesNoQuestion, OfEqualLettersTheFirstCounts) {
  use_test_messages();
  set_message(ANSWER_LETTERS, "AAA");
  EXPECT_EQ(in_child("a\n",
                     [] {
                       return choose_y_or_n({LAST_QUESTION, "?"}) ? "yes" : "no";
                     })
                .result,
            "yes");
  set_message(ANSWER_LETTERS, "ABB");
  EXPECT_EQ(in_child("b\n",
                     [] {
                       return choose_y_or_n({LAST_QUESTION, "?"}) ? "yes" : "no";
                     })
                .result,
            "no");
}

TEST(Answer, IsTheLineWithoutItsNewline) {
  EXPECT_EQ(answer("two words\nrest\n").result, "two words");
  EXPECT_EQ(answer("two words\n").out, "");
}

TEST(Answer, EnterAloneIsNothing) {
  EXPECT_EQ(answer("\n").result, "(nothing)");
}

TEST(Answer, TheQuitLetterAloneEndsTheProgram) {
  EXPECT_FALSE(answer("q\n").returned);
  EXPECT_FALSE(answer("Q\n").returned);
  EXPECT_EQ(answer("q \n").result, "q ");
  EXPECT_EQ(answer("quit\n").result, "quit");
}

TEST(Answer, TheEndOfInputQuits) {
  EXPECT_FALSE(answer("").returned);
  EXPECT_FALSE(answer("no newline").returned);
  EXPECT_EQ(answer("no newline").out, "<299>");
}

TEST(Answer, KeepsWhatFitsAndDropsTheRestOfTheLine) {
  const std::string line(1023, 'a');
  EXPECT_EQ(answer(line + "\n").result, line);
  EXPECT_EQ(answer(line + "b\n").result, line);
  EXPECT_EQ(answer("abcdef\n", 3).result, "abc");
  use_test_messages();
  const outcome seen = in_child("abcdef\nnext\n", [] {
    ask_string({BUS_QUESTION, ""}, 3);
    return *ask_string({BUS_QUESTION, ""});
  });
  EXPECT_EQ(seen.result, "next");
}

TEST(Answer, EndsAtANulThatCountsAsTyped) {
  EXPECT_EQ(answer(std::string_view("ab\0c\n", 5)).result, "ab");
  EXPECT_EQ(answer(std::string_view("\0\n", 2)).result, "");
  EXPECT_EQ(answer(std::string_view("q\0\n", 3)).result, "q");
}

TEST(SingleCharacter, LeavesTheRestOfTheLine) {
  use_test_messages();
  const outcome seen = in_child("xrest\n", [] {
    wait_for_enter({PRESS_ENTER, "Enter? "});
    return *ask_string({BUS_QUESTION, ""});
  });
  EXPECT_EQ(seen.result, "rest");
}

TEST(SingleCharacter, TheEndOfInputQuits) {
  use_test_messages();
  const outcome seen = in_child("", [] {
    wait_for_enter({PRESS_ENTER, "Enter? "});
    return "";
  });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
}

TEST(Question, PrintsItsTextAsItStands) {
  use_test_messages();
  const outcome seen = in_child("x\n", [] {
    return *ask({BUS_QUESTION, "a text  of 100%s that is not wrapped at all : "});
  });
  EXPECT_EQ(seen.result, "x");
  EXPECT_EQ(seen.out, "a text  of 100%s that is not wrapped at all : ");
  EXPECT_EQ(plain_question(LAST_QUESTION).text, "<100>");
}

TEST(Answers, ComeFromWhoeverGivesThemInTheOperatorsPlace) {
  use_test_messages();
  const outcome seen = in_child("not read\n", [] {
    product record;
    std::string asked_about;
    std::string given = "n\ntext\n";
    take_answers_from([&](const question& asked) -> int {
      asked_about += std::to_string(asked.number) + (asked.product == &record ? "p" : "-");
      if (given.empty()) return -1;
      const char c = given.front();
      given.erase(0, 1);
      return static_cast<unsigned char>(c);
    });
    std::string result =
        choose_y_or_n({.number = LAST_QUESTION, .product = &record}) ? "yes" : "no";
    result += *ask({.number = OWNER_QUESTION});
    return result + " " + asked_about;
  });
  EXPECT_EQ(seen.result, "notext 100p100p30-30-30-30-30-");
}

TEST(Answers, OfTheOperatorCanBeListenedTo) {
  use_test_messages();
  const outcome seen = in_child("typed\n", [] {
    std::string heard;
    const answer_source of_operator = answers_of_operator();
    take_answers_from([&](const question& asked) {
      const int c = of_operator(asked);
      if (c >= 0) heard += static_cast<char>(c);
      return c;
    });
    const std::string answer = *ask({BUS_QUESTION, "What? "});
    return answer + "," + heard;
  });
  EXPECT_EQ(seen.result, "typed,typed\n");
  EXPECT_EQ(seen.out, "What? ");
}

TEST(Answers, ThatEndQuit) {
  use_test_messages();
  const outcome seen = in_child("y\n", [] {
    take_answers_from([](const question&) { return -1; });
    return choose_y_or_n({LAST_QUESTION, "Sure?"}) ? "yes" : "no";
  });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.out, "Sure? <35>\n<299>");
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
