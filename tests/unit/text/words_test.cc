#include "text/words.h"

#include <gtest/gtest.h>

#include "text/white_space.h"

namespace morvane {
namespace {

using words = std::vector<std::string_view>;

TEST(Words, AreTheNonEmptyPiecesBetweenSeparators) {
  const struct {
    std::string_view value;
    words pieces;
  } rows[] = {
      {"", {}},
      {"  ", {}},
      {"one", {"one"}},
      {"one two", {"one", "two"}},
      {"  one   two  ", {"one", "two"}},
      {"one,two", {"one,two"}},
  };
  for (const auto& row : rows) EXPECT_EQ(split_words(row.value, " "), row.pieces) << row.value;
}

TEST(Words, AreSeparatedByAnyCharacterOfTheSeparators) {
  EXPECT_EQ(split_words("a/b:c/:d", "/:"), (words{"a", "b", "c", "d"}));
  EXPECT_EQ(split_words("a b", ""), words{"a b"});
}

TEST(Words, BetweenBlanksMayHoldANewline) {
  EXPECT_EQ(split_words("a b\tc\rd\fe\vf", BLANKS), (words{"a", "b", "c", "d", "e", "f"}));
  EXPECT_EQ(split_words("tar\nsed", BLANKS), words{"tar\nsed"});
}

}  // namespace
}  // namespace morvane
