#include "text/text.h"

#include <gtest/gtest.h>

#include <string>

namespace morvane {
namespace {

TEST(Text, StartsEmpty) {
  const text<5> field;
  EXPECT_TRUE(field.empty());
  EXPECT_EQ(field.view(), "");
  EXPECT_STREQ(field.c_str(), "");
}

TEST(Text, HoldsOneByteLessThanItsCapacityAndCutsTheRest) {
  EXPECT_EQ(text<5>::LONGEST, 4U);
  EXPECT_EQ(text<5>("abcd").view(), "abcd");
  EXPECT_EQ(text<5>("abcde").view(), "abcd");
  EXPECT_STREQ(text<5>("abcde").c_str(), "abcd");
}

TEST(Text, EndsAtTheFirstNulOfAValue) {
  using namespace std::string_view_literals;
  EXPECT_EQ(text<9>("ab\0cd"sv).view(), "ab");
  EXPECT_TRUE(text<9>("\0ab"sv).empty());
}

TEST(Text, AShorterValueReplacesAllOfALongerOne) {
  text<9> field = "abcdef";
  field = "xy";
  EXPECT_EQ(field.view(), "xy");
  EXPECT_EQ(std::string(field.c_str(), 8), std::string("xy\0\0\0\0\0\0", 8));
  field = std::string_view();
  EXPECT_TRUE(field.empty());
}

TEST(Text, TakesAViewOfItself) {
  text<9> field = "abcdef";
  field = field.view().substr(2);
  EXPECT_EQ(field.view(), "cdef");
}

TEST(Text, ComparesByteForByte) {
  const text<9> field = "Name";
  EXPECT_TRUE(field == "Name");
  EXPECT_TRUE(field == std::string_view("Name"));
  EXPECT_TRUE(field == text<9>("Name"));
  EXPECT_FALSE(field == "name");
  EXPECT_FALSE(field == "Name ");
  EXPECT_FALSE(field == "Nam");
  EXPECT_FALSE(field == "");
}

TEST(UntilNul, IsThePartBeforeTheFirstNul) {
  using namespace std::string_view_literals;
  EXPECT_EQ(until_nul("ab\0cd\0"sv), "ab");
  EXPECT_EQ(until_nul("ab"), "ab");
  EXPECT_EQ(until_nul("\0"sv), "");
  EXPECT_EQ(until_nul(""), "");
}

}  // namespace
}  // namespace morvane
