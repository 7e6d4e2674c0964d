#include "platform/identity.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "platform/shell.h"
#include "support/child.h"
#include "support/invented_names.h"

namespace morvane {
namespace {

// Has the host know a user and a group `name` as long as it lives.
struct host_that_knows {
  explicit host_that_knows(const char* name) { set_invented_name(name); }
  ~host_that_knows() { set_invented_name(nullptr); }
};

// Returns what the host's own tool says.
std::string said_by(const std::string& command) {
  return first_line_of(command, 1000).value_or("");
}

constexpr id_t NOBODY = 65534;

// Returns an id that no user and no group has.
id_t unknown_id() {
  id_t id = 54321;
  while (getpwuid(id) != nullptr || getgrgid(id) != nullptr) ++id;
  return id;
}

// Runs `code` in a child that has taken those ids, which takes the superuser.
outcome as(id_t real, id_t effective, id_t group, const std::function<std::string()>& code) {
  return in_child("", [&] {
    const bool taken =
        setresgid(group, group, group) == 0 && setresuid(real, effective, effective) == 0;
    return taken ? code() : "ids not taken";
  });
}

std::string rights() {
  return std::string(started_by_superuser() ? "started" : "-") + " " +
         (acts_as_superuser() ? "acts" : "-");
}

TEST(Identity, AKnownUserHasANameAndAHome) {
  const std::optional<user> found = find_user("root");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->name, "root");
  EXPECT_EQ(found->home, said_by("echo ~root"));
}

TEST(Identity, AnUnknownUserIsNobody) {
  EXPECT_FALSE(find_user("no-such-user"));
  EXPECT_FALSE(find_user(""));
  EXPECT_FALSE(find_user("ROOT"));
}

TEST(Identity, GroupsAreKnownByName) {
  EXPECT_TRUE(group_exists("root"));
  EXPECT_FALSE(group_exists("no-such-group"));
  EXPECT_FALSE(group_exists(""));
  EXPECT_FALSE(group_exists("0"));
}

TEST(Identity, AKnownUserIsLookedUpOnce) {
  const host_that_knows added("user-looked-up-once");
  const int before = lookups_by_name();
  for (int i = 0; i < 3; ++i) {
    const std::optional<user> found = find_user("user-looked-up-once");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "user-looked-up-once");
    EXPECT_EQ(found->home, "/home/x");
  }
  EXPECT_EQ(lookups_by_name() - before, 1);
}

TEST(Identity, AKnownGroupIsLookedUpOnce) {
  const host_that_knows added("group-looked-up-once");
  const int before = lookups_by_name();
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(group_exists("group-looked-up-once"));
  EXPECT_EQ(lookups_by_name() - before, 1);
}

TEST(Identity, AUserAddedDuringTheRunIsFound) {
  EXPECT_FALSE(find_user("late-user"));
  const host_that_knows added("late-user");
  EXPECT_TRUE(find_user("late-user"));
}

TEST(Identity, AGroupAddedDuringTheRunIsFound) {
  EXPECT_FALSE(group_exists("late-group"));
  const host_that_knows added("late-group");
  EXPECT_TRUE(group_exists("late-group"));
}

TEST(Identity, UsersAndGroupsAreRememberedApart) {
  const host_that_knows added("both");
  const int before = lookups_by_name();
  EXPECT_TRUE(find_user("both"));
  EXPECT_TRUE(group_exists("both"));
  EXPECT_EQ(lookups_by_name() - before, 2);
}

TEST(Identity, TheNamesAreThoseThatTheHostGives) {
  EXPECT_EQ(real_user_name(), said_by("getent passwd $(id -ru) | cut -d: -f1"));
  EXPECT_EQ(effective_user_name(), said_by("getent passwd $(id -u) | cut -d: -f1"));
  EXPECT_EQ(effective_group_name(), said_by("getent group $(id -g) | cut -d: -f1"));
}

TEST(Identity, TheSuperuserIsId0) {
  EXPECT_EQ(rights(), getuid() == 0 ? "started acts" : "- -");
}

TEST(Identity, RealAndEffectiveUserAreToldApart) {
  if (getuid() != 0) GTEST_SKIP() << "only the superuser can take other ids";
  const auto both = [] { return real_user_name() + " " + effective_user_name() + " " + rights(); };
  const std::string nobody = said_by("id -un " + std::to_string(NOBODY));
  EXPECT_EQ(as(0, NOBODY, 0, both).result, "root " + nobody + " started -");
  EXPECT_EQ(as(NOBODY, 0, 0, both).result, nobody + " root - acts");
}

TEST(Identity, AnIdWithoutAnEntryHasAnEmptyName) {
  if (getuid() != 0) GTEST_SKIP() << "only the superuser can take other ids";
  const id_t id = unknown_id();
  const outcome seen = as(id, id, id, [] {
    return "[" + real_user_name() + effective_user_name() + effective_group_name() + "] " +
           (real_user() ? "known" : "unknown");
  });
  EXPECT_EQ(seen.result, "[] unknown");
}

}  // namespace
}  // namespace morvane
