#include "depend/installed_version.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

using optional_type = std::optional<std::string_view>;

// Puts a description among the products installed in ./db.
void describe(const std::string& id, const std::string& category, const std::string& type,
              const std::string& version, int patch = 0) {
  write_file("db/install/" + id + ".descr", "Category = " + category + "\nType = " + type +
                                                "\nVersion = " + version +
                                                "\nPatch = " + std::to_string(patch) + "\n");
}

outcome look_up(const std::string& category, const optional_type& type,
                const product* record = nullptr, std::string_view typed = "") {
  return in_child(typed, [&] { return shown(get_version(record, "db", category, type)); });
}

std::string version_in_db(const std::string& category, const optional_type& type) {
  return look_up(category, type).result;
}

TEST(InstalledVersion, IsTheHighestOfTheDescribedOnes) {
  use_test_messages();
  for (const bool highest_first : {false, true}) {
    const scratch_directory directory;
    describe("a", "DB", "sql", "2.0.0", highest_first ? 3 : 1);
    describe("b", "DB", "sql", "2.0.0", highest_first ? 1 : 3);
    describe("c", "DB", "other", "9.9.9");
    describe("d", "OTHER", "sql", "9.9.9");
    EXPECT_EQ(version_in_db("DB", "sql"), "2.0.0.3");
  }
}

TEST(InstalledVersion, IsComparedNumberByNumber) {
  use_test_messages();
  const scratch_directory directory;
  describe("a", "DB", "sql", "1.9.9", 9);
  describe("b", "DB", "sql", "2.0.0");
  EXPECT_EQ(version_in_db("DB", "sql"), "2.0.0.0");
  describe("c", "DB", "sql", "2.0.10");
  describe("d", "DB", "sql", "2.0.9", 5);
  EXPECT_EQ(version_in_db("DB", "sql"), "2.0.10.0");
}

TEST(InstalledVersion, AnAbsentTypeMatchesEveryType) {
  use_test_messages();
  const scratch_directory directory;
  describe("a", "DB", "sql", "1.0");
  describe("b", "DB", "other", "3.0");
  EXPECT_EQ(version_in_db("DB", std::nullopt), "3.0.0.0");
  EXPECT_EQ(version_in_db("DB", ""), "-1.-1.-1.-1");
  EXPECT_EQ(version_in_db("LINKS", std::nullopt), "-1.-1.-1.-1");
}

TEST(InstalledVersion, IsUnknownWithoutDescriptions) {
  use_test_messages();
  const scratch_directory directory;
  EXPECT_EQ(version_in_db("DB", "sql"), "-1.-1.-1.-1");
  std::filesystem::create_directories("db/install");
  EXPECT_EQ(version_in_db("DB", "sql"), "-1.-1.-1.-1");
  EXPECT_EQ(look_up("DB", "sql").written(), "");
}

TEST(InstalledVersion, ADescribedProductOfTheTableTellsItsOwn) {
  use_test_messages();
  const scratch_directory directory;
  describe("a", "DB", "sql", "7.0");
  product record;
  record.install = product_state::SELECTED;
  record.id = "db";
  record.release = {1, 2, 3, 4};
  EXPECT_EQ(look_up("DB", "sql", &record).result, "1.2.3.4");
  EXPECT_EQ(look_up("anything", std::nullopt, &record).result, "1.2.3.4");
  record.install = product_state::AVAILABLE;
  EXPECT_EQ(look_up("DB", "sql", &record).result, "7.0.0.0");
  record.install = product_state::INSTALLED;
  record.id = "";
  EXPECT_EQ(look_up("DB", "sql", &record).result, "7.0.0.0");
}

TEST(InstalledVersion, ADescribedProductOfTheTableReadsNoDirectory) {
  use_test_messages();
  const scratch_directory directory;
  write_file("db/install/a.descr", "fault = 1\n");
  product record;
  record.install = product_state::INSTALLED;
  record.id = "db";
  record.release = {1, 2, 3, 4};
  EXPECT_EQ(look_up("DB", "sql", &record).err, "");
  EXPECT_NE(look_up("DB", "sql").err, "");
}

TEST(InstalledVersion, MinusOneIsUnknownWhateverTheOtherNumbers) {
  use_test_messages();
  const scratch_directory directory;
  describe("a", "STOODFOR", "sql", "-1.3.2", 1);
  EXPECT_EQ(version_in_db("STOODFOR", std::nullopt), "-1.-1.-1.-1");
  describe("b", "STANDIN", "sql", "1.5");
  EXPECT_EQ(version_in_db("STOODFOR", "sql"), "1.5.0.0");
  describe("c", "DB", "sql", "-1.3.2", 1);
  EXPECT_EQ(version_in_db("DB", "sql"), "-1.3.2.1");
}

TEST(InstalledVersion, AStandInCountsUpToVersionOnePointFive) {
  use_test_messages();
  const struct {
    const char* version;
    const char* found;
  } cases[] = {{"1.5", "1.5.0.2"},     {"1.5.9", "1.5.9.2"},   {"1.0", "1.0.0.2"},
               {"1.6", "-1.-1.-1.-1"}, {"2.0", "-1.-1.-1.-1"}, {"0.9", "-1.-1.-1.-1"}};
  for (const auto& [version, found] : cases) {
    const scratch_directory directory;
    describe("a", "STANDIN", "sql", version, 2);
    EXPECT_EQ(version_in_db("STOODFOR", "sql"), found) << version;
    EXPECT_EQ(version_in_db("STOODFOR", std::nullopt), found) << version;
    EXPECT_EQ(version_in_db("STOODFOR", "other"), "-1.-1.-1.-1");
    EXPECT_EQ(version_in_db("<242>", "sql"), "-1.-1.-1.-1");
  }
}

TEST(InstalledVersion, AStandInIsOfNoInterestWhereTheCategoryIsDescribed) {
  use_test_messages();
  const scratch_directory directory;
  describe("a", "STANDIN", "sql", "1.5");
  describe("b", "STOODFOR", "sql", "3.0");
  EXPECT_EQ(version_in_db("STOODFOR", "sql"), "3.0.0.0");
}

TEST(InstalledVersion, AStandInForItselfIsLookedUpOnceMore) {
  use_test_messages();
  set_message(CATEGORY_STANDING_IN, "STOODFOR");
  const scratch_directory directory;
  write_file("db/install/a.descr", "Category = STOODFOR\nfault = 1\n");
  const outcome seen = look_up("STOODFOR", "sql");
  EXPECT_EQ(seen.result, "-1.-1.-1.-1");
  const std::string::size_type first = seen.err.find("fault");
  ASSERT_NE(first, std::string::npos);
  const std::string report = seen.err.substr(0, seen.err.size() / 2);
  EXPECT_EQ(seen.err, report + report);
}

TEST(InstalledVersion, TheLinksToolIsProbedForItsFourTypes) {
  use_test_messages();
  const scratch_directory directory;
  write_file("db/config/links.conf", "#!/bin/sh\nexit 0\n");
  std::filesystem::permissions("db/config/links.conf", std::filesystem::perms::all);
  for (const char* type : {"linksa", "linksb", "linksc", "linksd"}) {
    EXPECT_EQ(version_in_db("LINKS", type), "1.3.0.0") << type;
  }
  write_file("db/config/links.conf", "#!/bin/sh\nexit 1\n");
  EXPECT_EQ(version_in_db("LINKS", "linksa"), "1.2.0.0");
  EXPECT_EQ(version_in_db("LINKS", "linkse"), "-1.-1.-1.-1");
  EXPECT_EQ(version_in_db("DB", "linksa"), "-1.-1.-1.-1");
  describe("a", "LINKS", "linksa", "4.5");
  EXPECT_EQ(version_in_db("LINKS", "linksa"), "4.5.0.0");
}

TEST(InstalledVersion, TheLinksToolIsAskedForWhereItIsNotFound) {
  use_test_messages();
  const scratch_directory directory;
  const outcome seen = look_up("LINKS", "linksa", nullptr, "q\n");
  EXPECT_EQ(seen.out, "\n<104>\n<105>\n<106> (db/config/links.conf): <299>");
}

}  // namespace
}  // namespace morvane
