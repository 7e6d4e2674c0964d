#include "text/format.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

constexpr std::size_t NO_PRECISION = std::string_view::npos;

TEST(Conversions, AreReadWithTheirPlaceAndKind) {
  const struct {
    std::string_view format;
    std::vector<conversion> found;
  } rows[] = {
      {"", {}},
      {"no conversion", {}},
      {"%s", {{0, 2, 's', false, 0, NO_PRECISION}}},
      {"a%-7.3db", {{1, 6, 'd', true, 7, 3}}},
      {"%+ #05.x", {{0, 8, 'x', false, 5, 0}}},
      {"%s%c\n", {{0, 2, 's', false, 0, NO_PRECISION}, {2, 2, 'c', false, 0, NO_PRECISION}}},
      {"100%% %i", {{3, 2, '%', false, 0, NO_PRECISION}, {6, 2, 'i', false, 0, NO_PRECISION}}},
      {"%9999.5000s", {{0, 11, 's', false, 4095, 4095}}},
  };
  for (const auto& row : rows) EXPECT_EQ(conversions(row.format), row.found) << row.format;
}

TEST(Conversions, TakeAnArgumentButForTheDoubledPercent) {
  for (const char letter : std::string_view("diuxXocs")) {
    const std::string format = {'%', letter};
    ASSERT_EQ(conversions(format).size(), 1U) << format;
    EXPECT_TRUE(conversions(format).front().takes_argument()) << format;
  }
  EXPECT_FALSE(conversions("%%").front().takes_argument());
}

TEST(Conversions, AreNoOtherPercents) {
  for (const std::string_view format :
       {"100%", "%n", "%ld", "%*d", "%f%p%a", "%-5", "%5.", "%1$s"}) {
    EXPECT_EQ(conversions(format), std::vector<conversion>()) << format;
  }
  EXPECT_EQ(conversions("%l%s"), (std::vector<conversion>{{2, 2, 's', false, 0, NO_PRECISION}}));
}

struct filling {
  std::string_view format;
  std::string_view result;
};

// Fills each format with the texts "abc", "" and "de".
void expect_fillings(std::initializer_list<filling> fillings) {
  for (const filling& each : fillings) {
    EXPECT_EQ(fill(each.format, {"abc", "", "de"}), each.result) << each.format;
  }
}

TEST(Format, ConversionsAreFilledInOrder) {
  expect_fillings({
      {"", ""},
      {"no conversion", "no conversion"},
      {"%s", "abc"},
      {"<%s|%s|%s>", "<abc||de>"},
      {"%s%s%s\n", "abcde\n"},
  });
}

TEST(Format, ANumberConversionTakesATextAsTheTextConversionDoes) {
  expect_fillings({
      {"%d", "abc"},
      {"%i", "abc"},
      {"%u", "abc"},
      {"%x", "abc"},
      {"%X", "abc"},
      {"%o", "abc"},
      {"%5d|", "  abc|"},
      {"%-5x|", "abc  |"},
      {"%.2u|", "ab|"},
  });
}

TEST(Format, ACharacterConversionTakesTheFirstByte) {
  expect_fillings({
      {"%c", "a"},
      {"%c|%c|%c", "a||d"},
      {"%3c|", "  a|"},
      {"%-3c|", "a  |"},
      {"%c%2c|", "a  |"},
  });
}

TEST(Format, TheLargestWidthAndPrecisionAre4095) {
  const std::string value(5000, 'v');
  EXPECT_EQ(fill("%4094s", {"v"}).size(), 4094U);
  EXPECT_EQ(fill("%4095s", {"v"}).size(), 4095U);
  EXPECT_EQ(fill("%4096s", {"v"}).size(), 4095U);
  EXPECT_EQ(fill("%-2147483647s", {"v"}).size(), 4095U);
  EXPECT_EQ(fill("%99999999999999999999d", {1}).size(), 4095U);
  EXPECT_EQ(fill("%.4094s", {value}).size(), 4094U);
  EXPECT_EQ(fill("%.4095s", {value}).size(), 4095U);
  EXPECT_EQ(fill("%.4096s", {value}).size(), 4095U);
  EXPECT_EQ(fill("%s", {value}).size(), 5000U);
}

TEST(Format, WidthPadsAndPrecisionCuts) {
  expect_fillings({
      {"%2s|", "abc|"},
      {"%3s|", "abc|"},
      {"%4s|", " abc|"},
      {"%-4s|", "abc |"},
      {"%.2s|", "ab|"},
      {"%.3s|", "abc|"},
      {"%.4s|", "abc|"},
      {"%.s|", "|"},
      {"%.0s|", "|"},
      {"%5.2s|", "   ab|"},
      {"%-5.2s|", "ab   |"},
      {"%.99999999999s|", "abc|"},
  });
}

TEST(Format, OfTheFlagsOnlyTheMinusHasAnEffect) {
  expect_fillings({
      {"%+s", "abc"},
      {"% s", "abc"},
      {"%#s", "abc"},
      {"%0s", "abc"},
      {"%05s|", "  abc|"},
      {"%+ #05d|", "  abc|"},
      {"%0-5s|", "abc  |"},
      {"%--5s|", "abc  |"},
  });
}

TEST(Format, AConversionWithoutAnArgumentIsEmptyTextInItsWidth) {
  expect_fillings({
      {"%s%s%s<%s>", "abcde<>"},
      {"%s%s%s<%3d>", "abcde<   >"},
      {"%s%s%s<%-3c>", "abcde<   >"},
  });
  EXPECT_EQ(fill("<%s>", {}), "<>");
}

TEST(Format, SurplusArgumentsAreIgnored) {
  EXPECT_EQ(fill("%s", {"a", "b", "c"}), "a");
}

TEST(Format, AClosingPercentPrintsOne) {
  expect_fillings({
      {"100%%", "100%"},
      {"%%%%", "%%"},
      {"%%s", "%s"},
      {"%5%", "%"},
      {"%-+ #05.3%|", "%|"},
      {"%5%s%s", "%sabc"},
  });
}

TEST(Format, AnythingElseBehindAPercentStandsAsItIs) {
  expect_fillings({
      {"100%", "100%"},
      {"%n", "%n"},
      {"%ld", "%ld"},
      {"%*d", "%*d"},
      {"%f%p%a", "%f%p%a"},
      {"%S", "%S"},
      {"%-5", "%-5"},
      {"%5.", "%5."},
      {"%5.2n", "%5.2n"},
      {"%.-3s", "%.-3s"},
      {"%1$s", "%1$s"},
      {"%hs", "%hs"},
      {"%\n%s", "%\nabc"},
      {"%l%s", "%labc"},
      {"%\303\244%s", "%\303\244abc"},
  });
}

TEST(Format, WhatIsFilledInIsNotLookedAtAgain) {
  EXPECT_EQ(fill("%s%s", {"%s%n%%", "x"}), "%s%n%%x");
}

TEST(Format, EveryKindOfArgumentIsAText) {
  EXPECT_EQ(fill("%s", {std::string("text")}), "text");
  EXPECT_EQ(fill("%s", {text<4>("field")}), "fie");
  EXPECT_EQ(fill("<%s>", {std::optional<std::string>()}), "<>");
  EXPECT_EQ(fill("<%s>", {std::optional<std::string>("set")}), "<set>");
  EXPECT_EQ(fill("%d %d %d", {0, -1, 2147483647}), "0 -1 2147483647");
}

}  // namespace
}  // namespace morvane
