#include "driver/start_up.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/records.h"

namespace morvane {
namespace {

TEST(StartUp, WarnsWhomTheSuperuserDidNotStart) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_TWO_USERS;
  const scratch_directory directory;
  write_file("morvane.rsc", "040 <40>\n041 <41>\n042 <42>\n");
  open_to_everybody(".");
  const auto start = [] {
    start_up();
    return "started";
  };
  EXPECT_EQ(in_child_of_two_users(NOBODY, 0, "", start).out, "\n<40>\n\n<41>\n<42>\n\n");
  const outcome by_superuser = in_child_of_two_users(0, NOBODY, "", start);
  EXPECT_EQ(by_superuser.out, "");
  EXPECT_EQ(by_superuser.result, "started");
}

}  // namespace
}  // namespace morvane
