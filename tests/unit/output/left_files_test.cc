#include "output/left_files.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/records.h"

namespace morvane {
namespace {

enum class kind { OWNER, GROUP };

std::string own_name(kind what) {
  return what == kind::OWNER ? user_name(geteuid()) : group_name(getegid());
}

// A new product without description whose owner and group are somebody else's.
product undescribed_product() {
  product record;
  record.install = product_state::CONFIGURED;
  record.owner = "somebody else";
  record.group = "somebody else";
  return record;
}

// Tells whether files are handed on; checks the name that is told in any case.
bool handed_on(const product& record, kind what) {
  std::string old_name = "unset";
  const bool result =
      what == kind::OWNER ? check_uid_diff(record, old_name) : check_gid_diff(record, old_name);
  EXPECT_EQ(old_name, own_name(what));
  return result;
}

// The two checks differ in the fields that they read; owners count for the superuser only.
class LeftFiles : public testing::TestWithParam<kind> {
 protected:
  void SetUp() override {
    if (GetParam() == kind::OWNER && !is_superuser()) GTEST_SKIP() << NEEDS_SUPERUSER;
  }
  name_text& settled(product& record) const {
    return GetParam() == kind::OWNER ? record.owner : record.group;
  }
  std::array<name_text, FIXED_NAMES>& fixed(product& record) const {
    return GetParam() == kind::OWNER ? record.fix_owner : record.fix_group;
  }
  long_text& fixed(target_dep& target) const {
    return GetParam() == kind::OWNER ? target.fix_owner : target.fix_group;
  }
  const std::string own_ = own_name(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Of, LeftFiles, testing::Values(kind::OWNER, kind::GROUP),
                         [](const auto& tested) {
                           return tested.param == kind::OWNER ? "Owners" : "Groups";
                         });

TEST_P(LeftFiles, AreHandedOnToSomebodyElse) {
  EXPECT_TRUE(handed_on(undescribed_product(), GetParam()));
}

TEST_P(LeftFiles, AreThoseOfNewProductsOnly) {
  for (const auto state : {product_state::AVAILABLE, product_state::SELECTED,
                           product_state::INSTALLED, product_state::SELECTED_FOR_RECONFIGURATION}) {
    product record = undescribed_product();
    record.install = state;
    EXPECT_FALSE(handed_on(record, GetParam())) << shown(state);
  }
}

TEST_P(LeftFiles, AreNotThoseOfDescribedProducts) {
  for (const int available : {-1, NO_DESCRIPTION, FIXED_LISTS, DESCRIBED, 3}) {
    product record = undescribed_product();
    record.descr_avail = available;
    EXPECT_EQ(handed_on(record, GetParam()), available <= 1) << available;
  }
}

TEST_P(LeftFiles, StayWhereTheNameIsTheSame) {
  product record = undescribed_product();
  settled(record) = own_;
  EXPECT_FALSE(handed_on(record, GetParam()));
}

TEST_P(LeftFiles, StayWhereTheNameIsFixedBeforeTheFirstEmptyEntry) {
  product record = undescribed_product();
  fixed(record)[1] = own_;
  EXPECT_TRUE(handed_on(record, GetParam()));
  fixed(record)[0] = "another";
  EXPECT_FALSE(handed_on(record, GetParam()));
}

TEST_P(LeftFiles, StayWhereTheLastOfTenNamesIsTheOwn) {
  product record = undescribed_product();
  fixed(record).fill("another");
  EXPECT_TRUE(handed_on(record, GetParam()));
  fixed(record)[9] = own_;
  EXPECT_FALSE(handed_on(record, GetParam()));
}

TEST_P(LeftFiles, StayWhereAWantedTargetFixesTheName) {
  const struct {
    target_state state;
    bool handed_on;
  } cases[] = {{target_state::NOT_WANTED, true},
               {target_state::WANTED, false},
               {target_state::RESOLVED, false}};
  for (const auto& [state, expected] : cases) {
    product record = undescribed_product();
    add_target(record, "first", target_state::RESOLVED);
    fixed(add_target(record, "main", state)) = own_;
    record.target_dep[11] = std::move(record.target_dep[1]);
    EXPECT_EQ(handed_on(record, GetParam()), expected);
  }
}

TEST_P(LeftFiles, TheNamesOfATargetAreWords) {
  for (const char separator : {' ', '\t', '\r', '\f', '\v', '\n', ','}) {
    product record = undescribed_product();
    fixed(add_target(record, "main", target_state::WANTED)) =
        std::string("another") + separator + own_;
    const bool separates = separator != '\n' && separator != ',';
    EXPECT_EQ(handed_on(record, GetParam()), !separates) << static_cast<int>(separator);
  }
  product record = undescribed_product();
  fixed(add_target(record, "main", target_state::WANTED)) = own_ + "x x" + own_;
  EXPECT_TRUE(handed_on(record, GetParam()));
}

// Returns what is handed on, and from whom.
std::string handed_on_from() {
  std::string owner = "unset", group = "unset";
  const bool owners = check_uid_diff(undescribed_product(), owner);
  const bool groups = check_gid_diff(undescribed_product(), group);
  return std::string(owners ? "owners of " : "no owners, ") + owner +
         (groups ? ", groups of " : ", no groups, ") + group;
}

TEST(LeftFilesOfAnOrdinaryUser, AreHandedOnToGroupsOnly) {
  EXPECT_EQ(
      in_child_as_ordinary_user("", handed_on_from).result,
      "no owners, " + user_name(ordinary_user()) + ", groups of " + group_name(ordinary_group()));
}

TEST(LeftFilesOfTwoUsers, AreThoseOfTheOneWhoseRightsTheFilesGet) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_TWO_USERS;
  const auto owners_of = [](uid_t real, uid_t effective) {
    const std::string said = in_child_of_two_users(real, effective, "", handed_on_from).result;
    return said.substr(0, said.find(", groups"));
  };
  EXPECT_EQ(owners_of(NOBODY, 0), "owners of root");
  EXPECT_EQ(owners_of(0, NOBODY), "no owners, " + user_name(NOBODY));
}

TEST(LeftFilesOfAnUnknownUser, HaveAnEmptyOldName) {
  if (!is_superuser()) GTEST_SKIP() << "only the superuser can become such a user";
  uid_t unknown = 54321;
  while (getpwuid(unknown) != nullptr || getgrgid(unknown) != nullptr) ++unknown;
  const outcome seen = in_child("", [&] {
    if (setgid(unknown) != 0 || setuid(unknown) != 0) std::abort();
    return handed_on_from();
  });
  EXPECT_EQ(seen.result, "no owners, , groups of ");
}

}  // namespace
}  // namespace morvane
