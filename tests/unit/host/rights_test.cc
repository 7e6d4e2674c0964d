#include "host/rights.h"

#include <gtest/gtest.h>

#include <csignal>

#include "platform/signals.h"
#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

using optional_name = std::optional<std::string>;

std::string check_here(const optional_name& user, const optional_name& group) {
  return check_chown_rights(user, group) ? "allowed" : "refused";
}

// Checks in a directory that everybody may write to.
outcome check_as_ordinary_user(const optional_name& user, const optional_name& group) {
  use_test_messages();
  const scratch_directory directory;
  open_to_everybody(".");
  return in_child_as_ordinary_user("", [&] { return check_here(user, group); });
}

outcome check(const optional_name& user, const optional_name& group) {
  use_test_messages();
  const scratch_directory directory;
  return in_child("", [&] { return check_here(user, group); });
}

std::string owner_refusal(const std::string& name) {
  return "<97> <98> '" + name + "' !\n";
}
std::string group_refusal(const std::string& name) {
  return "<97> <99> '" + name + "' !\n";
}

TEST(ChownRights, NothingAskedForIsAllowed) {
  use_test_messages();
  const scratch_directory directory;
  const outcome seen = in_child("", [] {
    write_file("install.mk", "kept");
    const std::string answer = check_here(std::nullopt, std::nullopt);
    return answer + " " + read_file("install.mk");
  });
  EXPECT_EQ(seen.result, "allowed kept");
  EXPECT_EQ(seen.written(), "");
}

TEST(ChownRights, AnOrdinaryUserMayGiveFilesToHimselfOnly) {
  const std::string own = user_name(ordinary_user());
  EXPECT_EQ(check_as_ordinary_user(own, std::nullopt).result, "allowed");
  EXPECT_EQ(check_as_ordinary_user(own, std::nullopt).written(), "");
  for (const std::string& name : {std::string("root"), own + "x", std::string("no such user")}) {
    const outcome seen = check_as_ordinary_user(name, std::nullopt);
    EXPECT_EQ(seen.result, "refused");
    EXPECT_EQ(seen.out, owner_refusal(name));
    EXPECT_EQ(seen.err, "");
  }
}

TEST(ChownRights, TheSuperuserMayGiveFilesToEveryName) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_SUPERUSER;
  for (const char* name : {"root", "nobody", "no such user", ""}) {
    EXPECT_EQ(check(name, std::nullopt).result, "allowed");
    EXPECT_EQ(check(name, std::nullopt).written(), "");
  }
}

TEST(ChownRights, AreOfTheNameWhoStartedTheProgramAndOfTheIdThatItActsWith) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_TWO_USERS;
  use_test_messages();
  const std::string nobody = user_name(NOBODY);
  const auto check_as = [&](uid_t real, uid_t effective, const std::string& name) {
    return in_child_of_two_users(real, effective, "",
                                 [&] { return check_here(name, std::nullopt); });
  };
  EXPECT_EQ(check_as(NOBODY, 0, "no such user").result, "allowed");
  EXPECT_EQ(check_as(0, NOBODY, "root").result, "allowed");
  EXPECT_EQ(check_as(0, NOBODY, nobody).out, owner_refusal(nobody));
}

TEST(ChownRights, AUserWithoutAnEntryHasAnEmptyName) {
  if (!is_superuser()) GTEST_SKIP() << "only the superuser can become such a user";
  use_test_messages();
  uid_t unknown = 54321;
  while (getpwuid(unknown) != nullptr) ++unknown;
  const auto check_as_unknown = [&](const char* name) {
    return in_child("", [&] {
      if (setuid(unknown) != 0) std::abort();
      return check_here(name, std::nullopt);
    });
  };
  EXPECT_EQ(check_as_unknown("").result, "allowed");
  EXPECT_EQ(check_as_unknown("root").out, owner_refusal("root"));
}

TEST(ChownRights, AGroupThatDoesNotExistIsRefusedToEveryone) {
  for (const char* name : {"no-such-group", "no such group", "", "it's", "$HOME", "~", "a`b`"}) {
    for (const outcome& seen :
         {check(std::nullopt, name), check_as_ordinary_user(std::nullopt, name)}) {
      EXPECT_EQ(seen.result, "refused") << name;
      EXPECT_EQ(seen.written(), group_refusal(name));
    }
  }
}

TEST(ChownRights, AGroupNameIsNeverRunByTheShell) {
  use_test_messages();
  const scratch_directory directory;
  const outcome seen = in_child("", [] {
    const std::string answer = check_here(std::nullopt, "x; touch ./evil; '$(touch ./worse)'");
    return answer + (std::filesystem::is_empty(".") ? "" : " and run");
  });
  EXPECT_EQ(seen.result, "refused");
}

TEST(ChownRights, TheOperatorsOwnGroupIsAllowed) {
  const outcome seen = check(std::nullopt, group_name(getegid()));
  EXPECT_EQ(seen.result, "allowed");
  EXPECT_EQ(seen.written(), "");
  EXPECT_EQ(check_as_ordinary_user(std::nullopt, group_name(ordinary_group())).result, "allowed");
}

TEST(ChownRights, AForeignGroupIsForTheSuperuserOnly) {
  const std::string foreign = foreign_group();
  const outcome seen = check_as_ordinary_user(std::nullopt, foreign);
  EXPECT_EQ(seen.result, "refused");
  EXPECT_EQ(seen.out, group_refusal(foreign));
  if (is_superuser()) {
    EXPECT_EQ(check(std::nullopt, foreign).result, "allowed");
  }
}

TEST(ChownRights, TheProbeFileNeverStays) {
  use_test_messages();
  for (const char* group : {"no-such-group", "own"}) {
    for (const bool there_before : {false, true}) {
      const scratch_directory directory;
      if (there_before) write_file("install.mk", "an old one");
      const std::string name = group == std::string("own") ? group_name(getegid()) : group;
      const outcome seen = in_child("", [&] {
        check_here(std::nullopt, name);
        return std::filesystem::exists("install.mk") ? "stays" : "removed";
      });
      EXPECT_EQ(seen.result, "removed") << name;
    }
  }
}

TEST(ChownRights, ASignalLeavesNoProbeFile) {
  use_test_messages();
  const scratch_directory directory;
  write_file("bin/chgrp", "#!/bin/sh\nls install.mk >probe\nkill -TERM \"$PROGRAM\"\n");
  std::filesystem::permissions("bin/chgrp", std::filesystem::perms::owner_all);
  EXPECT_EQ(signal_ending([&] {
              setenv("PATH", (directory.path() + "/bin:/usr/bin:/bin").c_str(), 1);
              setenv("PROGRAM", std::to_string(getpid()).c_str(), 1);
              handle_signals();
              check_here(std::nullopt, group_name(getegid()));
            }),
            SIGTERM);
  EXPECT_EQ(read_file("probe"), "install.mk\n");
  EXPECT_FALSE(std::filesystem::exists("install.mk"));
}

TEST(ChownRights, AnOwnerTestNeedsNoProbeFile) {
  use_test_messages();
  const scratch_directory directory;
  write_file("install.mk", "kept");
  check(user_name(getuid()), std::nullopt);
  EXPECT_EQ(read_file("install.mk"), "kept");
}

TEST(ChownRights, BothRefusedAreTwoLines) {
  const outcome seen = check_as_ordinary_user("root", "no-such-group");
  EXPECT_EQ(seen.result, "refused");
  EXPECT_EQ(seen.out, owner_refusal("root") + group_refusal("no-such-group"));
}

TEST(ChownRights, OneOfTwoRefusedIsARefusal) {
  const std::string own_user = user_name(ordinary_user());
  const std::string own_group = group_name(ordinary_group());
  EXPECT_EQ(check_as_ordinary_user("root", own_group).result, "refused");
  EXPECT_EQ(check_as_ordinary_user("root", own_group).out, owner_refusal("root"));
  EXPECT_EQ(check_as_ordinary_user(own_user, "no-such-group").result, "refused");
  EXPECT_EQ(check_as_ordinary_user(own_user, own_group).result, "allowed");
}

TEST(ChownRights, AGroupTestNeedsAWritableDirectory) {
  use_test_messages();
  const scratch_directory directory;
  std::filesystem::permissions(".", static_cast<std::filesystem::perms>(0555));
  const outcome seen = in_child_in_order("", [] {
    become_ordinary_user();
    return check_here("root", group_name(ordinary_group()));
  });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
  EXPECT_EQ(seen.out, owner_refusal("root") + "\n\n<101>\n\n ./install.mk<299>");
  const outcome owner_only = in_child_as_ordinary_user(
      "", [] { return check_here(user_name(ordinary_user()), std::nullopt); });
  EXPECT_EQ(owner_only.result, "allowed");
}

TEST(ChownRights, AProbeFileThatCannotBeCreatedEndsTheProgramOfTheSuperuserToo) {
  use_test_messages();
  const scratch_directory directory;
  std::filesystem::create_symlink("/nonexistent/file", "install.mk");
  const outcome seen = in_child("", [] { return check_here(std::nullopt, "no-such-group"); });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.err, "\n\n<101>\n\n ./install.mk");
  EXPECT_EQ(seen.out, "<299>");
}

std::string check_site_rights() {
  check_rights();
  return "passed";
}

TEST(SiteRights, PassSilently) {
  use_test_messages();
  const outcome seen = in_child("", check_site_rights);
  EXPECT_EQ(seen.result, "passed");
  EXPECT_EQ(seen.written(), "");
}

TEST(SiteRights, AFailingCommandEndsTheProgram) {
  use_test_messages();
  set_message(SITE_RIGHTS_COMMAND, "echo site; exit 2");
  const outcome seen = in_child_in_order("", [] {
    become_ordinary_user();
    return check_site_rights();
  });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
  EXPECT_EQ(seen.out, "site\n\n\n<102>\n\n<299>");
}

TEST(SiteRights, WhoActsAsSuperuserIsToldMore) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_TWO_USERS;
  use_test_messages();
  set_message(SITE_RIGHTS_COMMAND, "false");
  EXPECT_EQ(in_child_of_two_users(NOBODY, 0, "", check_site_rights).out, "<103>\n\n<299>");
  EXPECT_EQ(in_child_of_two_users(0, NOBODY, "", check_site_rights).out, "<299>");
}

TEST(SiteRights, TheSuperuserIsToldMore) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_SUPERUSER;
  use_test_messages();
  set_message(SITE_RIGHTS_COMMAND, "false");
  const outcome seen = in_child("", check_site_rights);
  EXPECT_EQ(seen.err, "\n\n<102>\n\n");
  EXPECT_EQ(seen.out, "<103>\n\n<299>");
}

}  // namespace
}  // namespace morvane
