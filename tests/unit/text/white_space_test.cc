#include "text/white_space.h"

#include <gtest/gtest.h>

#include <string>

namespace morvane {
namespace {

constexpr int END_OF_FILE = -1;

std::string bytes_that(bool (*belong)(int)) {
  std::string found;
  for (int c = END_OF_FILE; c < 256; ++c) {
    if (belong(c)) found += static_cast<char>(c);
  }
  return found;
}

TEST(WhiteSpace, IsSixCharacters) {
  EXPECT_EQ(bytes_that(is_white_space), "\t\n\v\f\r ");
}

TEST(WhiteSpace, IsBlankButForTheNewline) {
  EXPECT_EQ(bytes_that(is_blank), "\t\v\f\r ");
}

}  // namespace
}  // namespace morvane
