#include "catalogue/description_reader.h"

#include <gtest/gtest.h>

#include "support/child.h"

namespace morvane {
namespace {

constexpr const char* TOO_LONG = "morvane : warning : read line to long (max=1024)\n";
constexpr const char* ONE_QUOTE = "morvane : warning : read line contains only one '\"'\n";

struct entry {
  std::string value = "left over";
  std::string comment = "left over";
  std::string rest;  // what the file holds behind the entry
  std::string errors;
};

std::string rest_of(input_file& file) {
  std::string rest;
  for (int c; (c = file.get()) != input_file::END;) rest += static_cast<char>(c);
  return rest;
}

// Reads an entry whose file goes on behind the keyword with `content`.
entry read_entry(std::string_view content) {
  const scratch_directory here;
  write_file("entry", content);
  input_file file("entry");
  entry seen;
  testing::internal::CaptureStderr();
  const std::optional<fault_kind> fault = getvar(file, seen.value, seen.comment);
  if (fault) diagnose_fault({*fault, "", "", {}, ""});
  seen.errors = testing::internal::GetCapturedStderr();
  seen.rest = rest_of(file);
  return seen;
}

struct row {
  std::string_view content;
  std::string_view value;
  std::string_view rest = "";
  std::string_view comment = "";
};

// Reads entries that draw no warning.
void expect_entries(std::initializer_list<row> rows) {
  for (const row& each : rows) {
    const entry seen = read_entry(each.content);
    EXPECT_EQ(seen.value, each.value) << each.content;
    EXPECT_EQ(seen.comment, each.comment) << each.content;
    EXPECT_EQ(seen.rest, each.rest) << each.content;
    EXPECT_EQ(seen.errors, "") << each.content;
  }
}

std::string of(std::size_t count, char c) {
  return std::string(count, c);
}

TEST(Value, AWordEndsAtWhiteSpace) {
  expect_entries({
      {"=Foo\nNext", "Foo", "Next"},
      {" = Foo\nNext", "Foo", "Next"},
      {" \t\v\r\f= \t\v\r\fFoo\nNext", "Foo", "Next"},
      {"= Foo", "Foo"},
      {"= Foo \t\v\r\f\nNext", "Foo", "Next"},
      {"= Foo\tBar\n", "Foo", "ar\n"},
      {"= Foo Bar baz\n", "Foo", "ar baz\n"},
      {"= Foo\r\nNext", "Foo", "Next"},
      {"= /opt/a.b,c=d\n", "/opt/a.b,c=d"},
      {"= =\n", "="},
      {"= a\"b\"\n", "a\"b\""},
      {"= a#b\n", "a#b"},
  });
}

TEST(Value, IsEmptyWhereTheLineEnds) {
  expect_entries({
      {"=\nNext", "", "Next"},
      {"= \t\v\r\f\nNext", "", "Next"},
      {"=", ""},
      {"= ", ""},
      {"=\n\nNext", "", "\nNext"},
  });
}

TEST(Value, IsEmptyWithoutAnEqualsSignAndOneCharacterIsConsumed) {
  expect_entries({
      {"Foo\n", "", "oo\n"},
      {"  Foo\n", "", "oo\n"},
      {"\nNext", "", "Next"},
      {"#Next", "", "Next"},
      {"", ""},
  });
}

TEST(Value, IsFollowedByAComment) {
  expect_entries({
      {"= Foo # a comment\nNext", "Foo", "Next", "# a comment\n"},
      {"= Foo #\nNext", "Foo", "Next", "#\n"},
      {"= Foo #last", "Foo", "", "#last"},
      {"= # a comment\nNext", "", "Next", "# a comment\n"},
      {"=#\nNext", "", "Next", "#\n"},
      {"=#last", "", "", "#last"},
  });
}

TEST(Value, InQuotesEndsAtTheClosingQuoteAndTakesItsLine) {
  expect_entries({
      {"= \"two words\"\nNext", "two words", "Next"},
      {"=\"two words\" and more # dropped\nNext", "two words", "Next"},
      {"= \"\"\nNext", "", "Next"},
      {"= \"a\"b\"\nNext", "a", "Next"},
      {"= \" a\tb \"\nNext", " a\tb ", "Next"},
      {"= \"# no comment\"\n", "# no comment"},
      {"= \"last\"", "last"},
  });
}

TEST(Value, WithoutAClosingQuoteEndsAtALineEnd) {
  expect_entries({
      {"= \"open\nNext", "open", "Next"},
      {"= \"open\rmore\"\nNext", "open", "Next"},
      {"= \"open\vmore\"\nNext", "open", "Next"},
      {"= \"open\fmore\"\nNext", "open", "Next"},
      {"= \"\nNext", "", "Next"},
  });
}

TEST(Value, ThatNothingClosesDrawsAWarning) {
  EXPECT_EQ(read_entry("= \"open").value, "open");
  EXPECT_EQ(read_entry("= \"open").errors, ONE_QUOTE);
  EXPECT_EQ(read_entry("= \"").value, "");
  EXPECT_EQ(read_entry("= \"").errors, ONE_QUOTE);
}

TEST(Value, EndsAtItsFirstNul) {
  EXPECT_EQ(read_entry(std::string_view("= ab\0cd\nNext", 12)).value, "ab");
  EXPECT_EQ(read_entry(std::string_view("= ab\0cd\nNext", 12)).rest, "Next");
  EXPECT_EQ(read_entry(std::string_view("= \"a b\0c\"\nNext", 14)).value, "a b");
  EXPECT_EQ(read_entry(std::string_view("= \"a b\0c\"\nNext", 14)).rest, "Next");
}

TEST(LongValue, AWordIsTakenWholeWithAWarningFrom1025On) {
  EXPECT_EQ(read_entry("= " + of(1024, 'a') + "\n").errors, "");
  for (const std::size_t length : {1025U, 1026U, 3000U}) {
    const entry seen = read_entry("= " + of(length, 'a') + " # comment\nNext");
    EXPECT_EQ(seen.value, of(length, 'a'));
    EXPECT_EQ(seen.comment, "# comment\n");
    EXPECT_EQ(seen.rest, "Next");
    EXPECT_EQ(seen.errors, TOO_LONG);
  }
}

TEST(LongValue, ClosingQuoteAndLineEndCount) {
  // 1022 characters, the quote and the newline are 1024.
  const entry fits = read_entry("= \"" + of(1022, 'a') + "\"\nNext");
  EXPECT_EQ(fits.value, of(1022, 'a'));
  EXPECT_EQ(fits.errors, "");
  const entry exceeds = read_entry("= \"" + of(1023, 'a') + "\"\nNext");
  EXPECT_EQ(exceeds.value, of(1023, 'a') + "\"\n");
  EXPECT_EQ(exceeds.errors, TOO_LONG);
  EXPECT_EQ(exceeds.rest, "Next");
}

TEST(LongValue, OfQuotedTextTheFirst1025CharactersAreTaken) {
  const entry quote_within = read_entry("= \"" + of(1024, 'a') + "\" more\nNext");
  EXPECT_EQ(quote_within.value, of(1024, 'a') + "\"");
  EXPECT_EQ(quote_within.rest, " more\nNext");
  EXPECT_EQ(quote_within.errors, TOO_LONG);
  const entry quote_behind = read_entry("= \"" + of(1025, 'a') + "bc\"\nNext");
  EXPECT_EQ(quote_behind.value, of(1025, 'a'));
  EXPECT_EQ(quote_behind.rest, "bc\"\nNext");
  EXPECT_EQ(quote_behind.errors, TOO_LONG);
  const entry early_quote = read_entry("= \"early\"" + of(1019, 'a') + "bc\n");
  EXPECT_EQ(early_quote.value, "early\"" + of(1019, 'a'));
  EXPECT_EQ(early_quote.rest, "bc\n");
  EXPECT_EQ(early_quote.errors, TOO_LONG);
}

TEST(LongValue, TheLastLineIsMeasuredWithoutALineEnd) {
  EXPECT_EQ(read_entry("= \"" + of(1024, 'a')).errors, ONE_QUOTE);
  EXPECT_EQ(read_entry("= \"" + of(1025, 'a')).errors, TOO_LONG);
}

TEST(LongValue, ACommentIsReadUpTo1025Characters) {
  EXPECT_EQ(read_entry("= #" + of(1023, 'c') + "\nNext").rest, "Next");
  EXPECT_EQ(read_entry("= #" + of(1024, 'c') + "\nNext").rest, "\nNext");
  EXPECT_EQ(read_entry("= #" + of(1025, 'c') + "\nNext").rest, "c\nNext");
  // Behind a word its "#" is read on its own.
  EXPECT_EQ(read_entry("= Foo #" + of(1024, 'c') + "\nNext").rest, "Next");
  EXPECT_EQ(read_entry("= Foo #" + of(1025, 'c') + "\nNext").rest, "\nNext");
  EXPECT_EQ(read_entry("= Foo #" + of(1025, 'c') + "\nNext").comment, "#" + of(1025, 'c'));
}

}  // namespace
}  // namespace morvane
