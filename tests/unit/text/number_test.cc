#include "text/number.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace morvane {
namespace {

constexpr int LARGEST = std::numeric_limits<int>::max();
constexpr int SMALLEST = std::numeric_limits<int>::min();

TEST(Number, IsReadFromTheStartOfAText) {
  const struct {
    std::string_view value;
    int number;
  } rows[] = {
      {"0", 0},
      {"42", 42},
      {"007", 7},
      {"+7", 7},
      {"-7", -7},
      {"-0", 0},
      {" \t\n\v\f\r12", 12},
      {"12abc", 12},
      {"12 13", 12},
      {"0x10", 0},
      {"3.9", 3},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(leading_number(row.value), row.number) << row.value;
    EXPECT_EQ(number_or_zero(row.value), row.number) << row.value;
  }
}

TEST(Number, IsMissingWhereNoDigitsStand) {
  for (const std::string_view value : {"", " ", "-", "+", "--7", "+-7", "- 7", "a7", ".5"}) {
    EXPECT_EQ(leading_number(value), std::nullopt) << value;
    EXPECT_EQ(number_or_zero(value), 0) << value;
  }
}

TEST(Number, IsTakenOffAListUpToADigitBehindASeparator) {
  const struct {
    std::string_view list;
    std::optional<int> number;
    std::string_view rest;
  } rows[] = {
      {"", std::nullopt, ""},
      {"7", 7, ""},
      {"-7,8", -7, "8"},
      {"7,-8", 7, "8"},
      {"7x8,9", 7, "9"},
      {"x7,8", std::nullopt, "8"},
      {"7, ;8 9", 7, "8 9"},
      {"7,x", 7, ""},
      {"\n7,8", 7, "8"},
      {" 7,8", 7, "7,8"},
      {",7,8", std::nullopt, "7,8"},
  };
  for (const auto& row : rows) {
    std::string_view list = row.list;
    EXPECT_EQ(take_number(list, " ,;"), row.number) << row.list;
    EXPECT_EQ(list, row.rest) << row.list;
  }
}

TEST(Digits, AreAtLeastOneAndNothingElse) {
  for (const char* digits : {"0", "007", "12345678901234567890"}) EXPECT_TRUE(is_digits(digits));
  for (const char* others : {"", " 1", "1 ", "-1", "+1", "1.0", "x"})
    EXPECT_FALSE(is_digits(others));
}

TEST(Number, BeyondAnIntBecomesTheNearestInt) {
  EXPECT_EQ(leading_number("2147483647"), LARGEST);
  EXPECT_EQ(leading_number("2147483648"), LARGEST);
  EXPECT_EQ(leading_number("-2147483648"), SMALLEST);
  EXPECT_EQ(leading_number("-2147483649"), SMALLEST);
  EXPECT_EQ(leading_number(std::string(1000, '9')), LARGEST);
  EXPECT_EQ(leading_number("-" + std::string(1000, '9')), SMALLEST);
  EXPECT_EQ(leading_number(std::string(1000, '0') + "5"), 5);
}

}  // namespace
}  // namespace morvane
