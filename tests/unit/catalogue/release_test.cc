#include "catalogue/release.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(Release, ShowsOnlyNumbersThatSaySomething) {
  EXPECT_EQ(version_numbers({1, 0, 0, 0}), "1.0");
  EXPECT_EQ(version_numbers({2, 1, 0, 0}), "2.1");
  EXPECT_EQ(version_numbers({2, 1, 3, 4}), "2.1.3, patch 4");
  EXPECT_EQ(version_numbers({2, 1, 3, 0}), "2.1.3");
  EXPECT_EQ(version_numbers({2, 1, 0, 4}), "2.1, patch 4");
  EXPECT_EQ(version_numbers({2, 1, -1, -1}), "2.1");
  EXPECT_EQ(version_numbers({-1, -2, 0, 0}), "-1.-2");
  EXPECT_EQ(version_numbers({0, 0, -1, 0}), "0.0");
}

TEST(Release, IsUnknownInAllFourNumbers) {
  EXPECT_EQ(UNKNOWN_RELEASE, (release{-1, -1, -1, -1}));
  EXPECT_LT(UNKNOWN_RELEASE, release());
}

TEST(Release, ComparesNumberByNumber) {
  const release rising[] = {{0, 9, 9, 9}, {1, 0, 9, 9}, {1, 1, 0, 9}, {1, 1, 1, 0},
                            {1, 1, 1, 1}, {1, 1, 2, 0}, {1, 2, 0, 0}, {2, 0, 0, 0}};
  for (std::size_t i = 0; i + 1 < std::size(rising); ++i) EXPECT_LT(rising[i], rising[i + 1]) << i;
}

TEST(Release, ZeroPointZeroIsShownAsUnknown) {
  const release unknown[] = {{0, 0, 0, 0},  {0, 0, 9, 9},  {-1, -1, -1, -1},
                             {1, -1, 0, 0}, {-1, 1, 0, 0}, {-2, 5, 0, 0}};
  for (const release& shown : unknown) EXPECT_TRUE(is_shown_as_unknown(shown));
  const release known[] = {{0, 1, 0, 0}, {1, 0, 0, 0}, {1, 0, -1, -1}};
  for (const release& shown : known) EXPECT_FALSE(is_shown_as_unknown(shown));
}

}  // namespace
}  // namespace morvane
