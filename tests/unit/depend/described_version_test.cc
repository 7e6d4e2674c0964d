#include "depend/described_version.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

outcome look_up_described(const std::string& category, std::string_view type) {
  use_test_messages();
  return in_child(
      "", [&] { return version_numbers(described_version(nullptr, "db", category, type)); });
}

TEST(DescribedVersion, IsTheHighestThatDescriptionsTell) {
  const scratch_directory directory;
  write_file("db/install/a.descr", "Category = DB\nType = sql\nVersion = 1.2\n");
  write_file("db/install/b.descr", "Category = DB\nType = sql\nVersion = 1.10\nPatch = 3\n");
  write_file("db/install/c.descr", "Category = DB\nType = flat\nVersion = 9.0\n");
  EXPECT_EQ(look_up_described("DB", "sql").result, "1.10, patch 3");
}

TEST(DescribedVersion, HasNoFallbackAndAsksNobody) {
  const scratch_directory directory;
  write_file("db/install/a.descr", "Category = STANDIN\nType = sql\nVersion = 1.5\n");
  EXPECT_EQ(look_up_described("STOODFOR", "sql").result, "-1.-1");
  const outcome seen = look_up_described("LINKS", "linksa");
  EXPECT_EQ(seen.result, "-1.-1");
  EXPECT_EQ(seen.written(), "");
}

}  // namespace
}  // namespace morvane
