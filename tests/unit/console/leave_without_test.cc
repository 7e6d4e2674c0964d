#include "console/leave_without.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

outcome leave(const std::function<void()>& way_out) {
  use_test_messages();
  return in_child("", [&] {
    way_out();
    return "";
  });
}

TEST(LeavingWithout, AFileShowsItsName) {
  const outcome seen = leave([] { leave_without_file("app.dat"); });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
  EXPECT_EQ(seen.out, "\n\n<95>app.dat<96>\n\n<299>");
  EXPECT_EQ(seen.err, "");
}

TEST(LeavingWithout, TheCurrentDirectoryIsAnError) {
  const outcome seen = leave([] { leave_without_current_directory(); });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
  EXPECT_EQ(seen.out, "<299>");
  EXPECT_EQ(seen.err, "morvane : error : failed to get current directory.\n");
}

}  // namespace
}  // namespace morvane
