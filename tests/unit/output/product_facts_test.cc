#include "output/product_facts.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"
#include "support/texts.h"

namespace morvane {
namespace {

product described_product(product_state state) {
  product record;
  record.id = "app";
  record.install = state;
  record.descr_avail = DESCRIBED;
  return record;
}

std::string in_lines(const std::vector<std::string>& words) {
  std::string lines;
  for (const std::string& word : words) lines += word + "\n";
  return lines;
}

// Returns the files that are copied, a line each, and what is said of the others.
outcome files_of(const product& record) {
  return in_child("", [&] { return in_lines(gather_facts(record, "").files); });
}

TEST(ProductFacts, TellWhichFilesAreThereAndReportTheOthersInOrder) {
  const scratch_directory directory;
  const product record = described_product(product_state::CONFIGURED);
  const outcome nothing = files_of(record);
  EXPECT_EQ(nothing.result, "");
  EXPECT_EQ(nothing.out, "");
  EXPECT_EQ(nothing.err, missing_file("morvane.rsc") + missing_file("morvane.SunOS4") +
                             missing_file("morvane.SunOS5") + missing_file("Makefile") +
                             missing_file("app.descr") + missing_file("app.dat"));
  for (const char* file : {"app.dat", "Makefile", "morvane.SunOS5"}) write_file(file, "");
  const outcome some = files_of(record);
  EXPECT_EQ(some.result, "morvane.SunOS5\nMakefile\napp.dat\n");
  EXPECT_EQ(some.err, missing_file("morvane.rsc") + missing_file("morvane.SunOS4") +
                          missing_file("app.descr"));
}

TEST(ProductFacts, OnlyTheFilesThatAreCopiedAreLookedFor) {
  const scratch_directory directory;
  product record = described_product(product_state::SELECTED_FOR_RECONFIGURATION);
  EXPECT_EQ(files_of(record).err, missing_file("app.dat"));
  record.descr_avail = NO_DESCRIPTION;
  EXPECT_EQ(files_of(record).err, "");
  record.install = product_state::CONFIGURED;
  EXPECT_EQ(files_of(record).err, missing_file("morvane.rsc") + missing_file("morvane.SunOS4") +
                                      missing_file("morvane.SunOS5") + missing_file("Makefile"));
}

TEST(ProductFacts, ADirectoryIsNoFile) {
  const scratch_directory directory;
  std::filesystem::create_directory("app.dat");
  const product record = described_product(product_state::SELECTED_FOR_RECONFIGURATION);
  EXPECT_EQ(files_of(record).err, missing_file("app.dat"));
}

TEST(ProductFacts, OnlySunOS5IsToldNotToFollowLinks) {
  const scratch_directory directory;
  product record = described_product(product_state::SELECTED_FOR_RECONFIGURATION);
  record.descr_avail = NO_DESCRIPTION;
  for (const char* system : {"", "SunOS", "SunOS4", "SunOS6", "SunOS55", "sunos5", "Linux6"}) {
    EXPECT_FALSE(gather_facts(record, system).link_option) << system;
  }
  EXPECT_TRUE(gather_facts(record, "SunOS5").link_option);
}

// Returns who acts, and whose files are handed on.
std::string operator_of(const product& record) {
  const product_facts facts = gather_facts(record, "");
  return std::string(facts.superuser ? "superuser" : "ordinary user") + ", owner " +
         facts.old_owner.value_or("none") + ", group " + facts.old_group.value_or("none");
}

// A new product without description, whose owner and group are somebody else's.
product foreign_product() {
  product record = described_product(product_state::CONFIGURED);
  record.descr_avail = NO_DESCRIPTION;
  record.owner = "somebody else";
  record.group = "somebody else";
  return record;
}

TEST(ProductFacts, TellWhoActs) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_SUPERUSER;
  const scratch_directory directory;
  const auto seen = [](const product& record) {
    return in_child("", [&] { return operator_of(record); }).result;
  };
  EXPECT_EQ(seen(foreign_product()),
            "superuser, owner " + user_name(0) + ", group " + group_name(getegid()));
  EXPECT_EQ(seen(described_product(product_state::CONFIGURED)),
            "superuser, owner none, group none");
}

TEST(ProductFacts, TellThatAnOrdinaryUserActs) {
  const scratch_directory directory;
  open_to_everybody(".");
  const auto seen = [](const product& record) {
    return in_child_as_ordinary_user("", [&] { return operator_of(record); }).result;
  };
  EXPECT_EQ(seen(foreign_product()),
            "ordinary user, owner none, group " + group_name(ordinary_group()));
  EXPECT_EQ(seen(described_product(product_state::CONFIGURED)),
            "ordinary user, owner none, group none");
}

}  // namespace
}  // namespace morvane
