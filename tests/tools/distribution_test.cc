#include "distribution/distribution.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

class Distribution : public testing::Test {
 protected:
  Distribution() { use_test_messages(); }

 private:
  scratch_directory here_;
};

TEST_F(Distribution, HoldsAProductForEachArchiveAndDescription) {
  write_file("b.tar", "");
  write_file("b.descr", "Name = B\n");
  write_file("c.descr", "");
  write_file("a.tar", "");
  write_file(".hidden.tar", "");
  std::filesystem::create_directory("d.tar");
  std::filesystem::create_directory("c");
  const auto loaded = load_distribution(".");
  ASSERT_TRUE(loaded);
  EXPECT_EQ(loaded->directory, "");
  ASSERT_EQ(loaded->products.size(), 3U);
  const auto& [a, b, c] = std::tie(loaded->products[0], loaded->products[1], loaded->products[2]);
  EXPECT_EQ(a.identifier, "a");
  EXPECT_EQ(a.archive, "a.tar");
  EXPECT_EQ(a.description.outcome, read_outcome::MISSING);
  EXPECT_EQ(b.archive, "b.tar");
  EXPECT_FALSE(b.has_source_tree);
  EXPECT_EQ(b.description.outcome, read_outcome::DONE);
  EXPECT_EQ(b.description.record.name, "B");
  EXPECT_EQ(b.description.text, "Name = B\n");
  EXPECT_FALSE(c.archive);
  EXPECT_TRUE(c.has_source_tree);
}

TEST_F(Distribution, NamesItsFilesBehindItsDirectory) {
  write_file("dist/x.tar", "");
  for (const char* directory : {"dist", "dist/", "dist//"}) {
    const auto loaded = load_distribution(directory);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->products[0].archive, "dist/x.tar");
    EXPECT_EQ(loaded->products[0].description.file, "dist/x.descr");
  }
  EXPECT_FALSE(load_distribution("missing"));
}

TEST_F(Distribution, TellsWhereEntriesFaultsPartsAndNeedsStand) {
  write_file("x.descr",
             "# head\nName = X\nNmae = Y\nTarget = t\n NeedsCategory = c\nNeedsType = y\n"
             "NeedsType =\nNeedsType = z\n");
  const read_description read = load_description(".", "x");
  ASSERT_EQ(read.entries.size(), 7U);
  EXPECT_EQ(read.entries[0].keyword, message_number{});
  EXPECT_EQ(read.entries[0].value, " head");
  EXPECT_EQ(read.entries[1].keyword, KEYWORD_NAME);
  EXPECT_EQ(read.entries[1].value, "X");
  EXPECT_EQ(read.entries[1].place.line, 2U);
  EXPECT_EQ(read.entries[3].place.line, 5U);
  EXPECT_EQ(read.entries[3].place.column, 2U);
  ASSERT_EQ(read.faults.size(), 1U);
  EXPECT_EQ(read.faults[0].keyword, "Nmae");
  EXPECT_EQ(read.faults[0].place.line, 3U);
  ASSERT_EQ(read.parts.size(), 1U);
  EXPECT_EQ(read.parts[0].place.line, 4U);
  ASSERT_EQ(read.parts[0].categories.size(), 1U);
  EXPECT_EQ(read.parts[0].categories[0].place.line, 5U);
  ASSERT_EQ(read.parts[0].categories[0].types.size(), 2U);
  EXPECT_EQ(read.parts[0].categories[0].types[1].line, 8U);
}

TEST_F(Distribution, DoesNotReadADescriptionThatIsTooLong) {
  write_file("x.descr", std::string(LONGEST_DESCRIPTION, '\n'));
  EXPECT_FALSE(load_description(".", "x").too_long);
  write_file("x.descr", std::string(LONGEST_DESCRIPTION + 1, '\n'));
  EXPECT_TRUE(load_description(".", "x").too_long);
}

}  // namespace
}  // namespace morvane
