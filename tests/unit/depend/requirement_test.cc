#include "depend/requirement.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

using names = std::vector<std::string_view>;

product db_product(const release& version) {
  product record;
  record.install = product_state::INSTALLED;
  record.id = "db";
  record.category = "DB";
  record.type = "sql";
  record.path = "db";
  record.release = version;
  return record;
}

version_check check(const product& record, const release& required) {
  return check_version(&record, "DB", "sql", required, described_version);
}

TEST(Requirement, IsThatOfTheAlternative) {
  type_dep sql;
  sql.type = "sql";
  sql.release = {1, 2, 3, 4};
  sql.file_dep[0] = "lib/x";
  const requirement wanted = requirement_of("DB", &sql);
  EXPECT_EQ(wanted.category, "DB");
  EXPECT_EQ(wanted.type, "sql");
  EXPECT_EQ(wanted.minimum, (release{1, 2, 3, 4}));
  EXPECT_EQ(wanted.files, names{"lib/x"});
}

TEST(Requirement, WithoutAnAlternativeIsOnlyTheCategory) {
  const requirement wanted = requirement_of("DB", nullptr);
  EXPECT_EQ(wanted.category, "DB");
  EXPECT_FALSE(wanted.type.has_value());
  EXPECT_EQ(wanted.files, names());
}

TEST(VersionCheck, ComparesWithTheMinimum) {
  const release required = {1, 2, 0, 0};
  const struct {
    release installed;
    version_check outcome;
  } cases[] = {
      {{1, 2, 0, 0}, version_check::SATISFIED}, {{1, 1, 9, 9}, version_check::TOO_OLD},
      {{1, 3, 0, 0}, version_check::SATISFIED}, {{2, 0, 0, 0}, version_check::SATISFIED},
      {{1, 2, 0, 1}, version_check::SATISFIED}, {{0, 9, 9, 9}, version_check::TOO_OLD},
      {{1, 2, -1, 0}, version_check::UNKNOWN},  {{1, -1, 0, 0}, version_check::UNKNOWN},
      {{0, -1, 0, 0}, version_check::TOO_OLD},  {{1, 2, 0, -1}, version_check::UNKNOWN},
      {{1, 2, -2, 0}, version_check::TOO_OLD},  {{-2, 2, 0, 0}, version_check::TOO_OLD},
      {{-1, 2, 0, 0}, version_check::UNKNOWN},  {{-1, 1, 9, 9}, version_check::TOO_OLD},
  };
  for (const auto& [installed, outcome] : cases) {
    EXPECT_EQ(check(db_product(installed), required), outcome) << shown(installed);
  }
  EXPECT_EQ(check(db_product({1, 2, 3, 3}), {1, 2, 3, 4}), version_check::TOO_OLD);
  EXPECT_EQ(check(db_product({1, 2, 3, 4}), {1, 2, 3, 4}), version_check::SATISFIED);
}

TEST(VersionCheck, AnEntirelyUnknownVersionPassesAsUnknown) {
  use_test_messages();
  const scratch_directory directory;
  product record = db_product({0, 0, 0, 0});
  record.id = "";
  const outcome seen = in_child("", [&] {
    return std::to_string(static_cast<int>(check(record, {9, 9, 9, 9})));
  });
  EXPECT_EQ(seen.result, "1");
}

TEST(VersionCheck, ComparesCategoryAndTypeFirst) {
  const product record = db_product({1, 0, 0, 0});
  const release high = {9, 0, 0, 0};
  EXPECT_EQ(check_version(nullptr, "DB", "sql", high, described_version), version_check::SATISFIED);
  EXPECT_EQ(check_version(&record, std::nullopt, "sql", high, described_version),
            version_check::SATISFIED);
  EXPECT_EQ(check_version(&record, "OTHER", "other", high, described_version),
            version_check::OTHER_CATEGORY);
  EXPECT_EQ(check_version(&record, "OTHER", std::nullopt, high, described_version),
            version_check::OTHER_CATEGORY);
  EXPECT_EQ(check_version(&record, "DB", "other", high, described_version),
            version_check::OTHER_TYPE);
  EXPECT_EQ(check_version(&record, "DB", "", high, described_version), version_check::OTHER_TYPE);
  EXPECT_EQ(check_version(&record, "DB", "sql", high, described_version), version_check::TOO_OLD);
}

TEST(VersionCheck, WithoutATypeNoVersionIsRead) {
  use_test_messages();
  const scratch_directory directory;
  write_file("db/install/a.descr", "fault = 1\n");
  product record = db_product({0, 0, 0, 0});
  record.id = "";
  const outcome seen = in_child("", [&] {
    const auto result = check_version(&record, "DB", std::nullopt, {9, 0, 0, 0}, described_version);
    return std::to_string(static_cast<int>(result));
  });
  EXPECT_EQ(seen.result, "0");
  EXPECT_EQ(seen.err, "");
}

TEST(MissingFiles, AnAbsoluteNameStandsForTheDirectoryItself) {
  const scratch_directory directory;
  write_file("db/lib/x", "");
  const names files = {"lib/x", "/no/such", "lib/y"};
  EXPECT_EQ(missing_files("db", files), names{"lib/y"});
  EXPECT_EQ(missing_files("no/such", files), files);
  EXPECT_EQ(missing_files("no/such", {}), names());
}

TEST(MissingFiles, LongNamesAreNotCutAndNoPermissionIsNeeded) {
  const scratch_directory directory;
  const std::string deep = std::string(200, 'a') + "/" + std::string(100, 'b');
  write_file(deep, "");
  std::filesystem::permissions(deep, std::filesystem::perms::none);
  const std::string deeper = deep + "c";
  EXPECT_EQ(missing_files(".", names{deep, deeper}), names{deeper});
}

// A look-up that knows no version, and counts its calls.
int look_ups = 0;
release look_up_in_vain(const product*, std::string_view, std::string_view,
                        std::optional<std::string_view>) {
  ++look_ups;
  return UNKNOWN_RELEASE;
}

// Type sql, version 1.2 or newer, with two files.
requirement sql_with_files() {
  return {"DB", "sql", {1, 2, 0, 0}, {"lib/x", "lib/y"}};
}

TEST(Examination, FindsNothingWrong) {
  const scratch_directory directory;
  write_file("db/lib/x", "");
  write_file("db/lib/y", "");
  const verdict found =
      examine(db_product({1, 2, 0, 0}), sql_with_files(), in_doubt::REFUSE, described_version);
  EXPECT_EQ(found.version, version_check::SATISFIED);
  EXPECT_TRUE(found.version_will_do);
  EXPECT_EQ(found.missing_files, names());
  EXPECT_TRUE(found.is_met());
}

TEST(Examination, NamesTheMissingFiles) {
  const scratch_directory directory;
  write_file("db/lib/x", "");
  const verdict found =
      examine(db_product({1, 2, 0, 0}), sql_with_files(), in_doubt::REFUSE, described_version);
  EXPECT_TRUE(found.version_will_do);
  EXPECT_EQ(found.missing_files, names{"lib/y"});
  EXPECT_FALSE(found.is_met());
}

TEST(Examination, LooksForNoFilesWhereTheVersionDecides) {
  const scratch_directory directory;
  product other_type = db_product({9, 0, 0, 0});
  other_type.type = "flat";
  product other_category = db_product({9, 0, 0, 0});
  other_category.category = "WEB";
  const struct {
    product record;
    version_check version;
  } cases[] = {
      {db_product({1, 1, 9, 9}), version_check::TOO_OLD},
      {std::move(other_type), version_check::OTHER_TYPE},
      {std::move(other_category), version_check::OTHER_CATEGORY},
  };
  for (const auto& [record, version] : cases) {
    for (const in_doubt doubt : {in_doubt::REFUSE, in_doubt::ACCEPT}) {
      const verdict found = examine(record, sql_with_files(), doubt, described_version);
      EXPECT_EQ(found.version, version);
      EXPECT_FALSE(found.version_will_do);
      EXPECT_EQ(found.missing_files, names());
      EXPECT_FALSE(found.is_met());
    }
  }
}

TEST(Examination, AVersionInDoubtIsRefusedOrAccepted) {
  const scratch_directory directory;
  const product record = db_product({1, 2, -1, 0});
  const verdict refused = examine(record, sql_with_files(), in_doubt::REFUSE, described_version);
  EXPECT_EQ(refused.version, version_check::UNKNOWN);
  EXPECT_FALSE(refused.version_will_do);
  EXPECT_EQ(refused.missing_files, names());
  const verdict accepted = examine(record, sql_with_files(), in_doubt::ACCEPT, described_version);
  EXPECT_EQ(accepted.version, version_check::UNKNOWN);
  EXPECT_TRUE(accepted.version_will_do);
  EXPECT_EQ(accepted.missing_files, (names{"lib/x", "lib/y"}));
}

TEST(Examination, LooksForNoFilesOfAProductThatThisRunInstalls) {
  const scratch_directory directory;
  product record = db_product({1, 2, 0, 0});
  for (const auto state : {product_state::SELECTED, product_state::CONFIGURED}) {
    record.install = state;
    EXPECT_TRUE(examine(record, sql_with_files(), in_doubt::REFUSE, described_version).is_met());
  }
}

TEST(Examination, LooksTheVersionUpOnceAndOnlyWhereItMatters) {
  const scratch_directory directory;
  look_ups = 0;
  product record = db_product({0, 0, 0, 0});
  const verdict found = examine(record, sql_with_files(), in_doubt::REFUSE, look_up_in_vain);
  EXPECT_EQ(found.version, version_check::UNKNOWN);
  EXPECT_EQ(look_ups, 1);
  record.type = "flat";
  examine(record, sql_with_files(), in_doubt::REFUSE, look_up_in_vain);
  examine(record, requirement_of("DB", nullptr), in_doubt::REFUSE, look_up_in_vain);
  EXPECT_EQ(look_ups, 1);
}

}  // namespace
}  // namespace morvane
