#include "depend/confirmation.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"
#include "support/texts.h"

namespace morvane {
namespace {

product app() {
  product record;
  record.install = product_state::SELECTED;
  record.name = "app";
  record.release = {2, 0, 0, 1};
  return record;
}

product candidate(product_state state = product_state::INSTALLED) {
  product record;
  record.install = state;
  record.id = "db";
  record.path = "/opt/db";
  record.category = "DB";
  record.type = "sql";
  record.release = {1, 0, 0, 0};
  return record;
}

// Offers a candidate, without a target for a patch, on a screen so wide that nothing is wrapped.
outcome offer(const product& record, std::optional<std::string_view> target = "main",
              std::string_view typed = "y\n") {
  use_test_messages();
  set_message(RULER, std::string(149, '-'));
  return in_child(typed,
                  [&] { return product_accept(app(), target, record) ? "taken" : "refused"; });
}

const std::string HEADING = "\n<260> 'app', <261> 'main', <268> 'DB' <264>:\n\n";

TEST(Candidate, IsShownAndAskedAbout) {
  const outcome seen = offer(candidate());
  EXPECT_EQ(seen.out, HEADING +
                          "\tdb\n\tdirectory : /opt/db\n\ttype      : sql\n"
                          "\tversion   : 1.0\n" +
                          ACCEPT);
  EXPECT_EQ(seen.result, "taken");
  EXPECT_EQ(offer(candidate(), "main", "n\n").result, "refused");
  EXPECT_EQ(offer(candidate(), "main", "\n").result, "taken");
  EXPECT_FALSE(offer(candidate(), "main", "").returned);
}

TEST(Candidate, ItsBestNameIsShown) {
  product record = candidate();
  const auto shows = [&](const std::string& line) {
    return offer(record).out.starts_with(HEADING + "\t" + line + "\n\tdirectory");
  };
  EXPECT_TRUE(shows("db"));
  record.name = "Database";
  EXPECT_TRUE(shows("Database"));
  record.full_name = "The Database";
  EXPECT_TRUE(shows("The Database"));
  record.id = record.name = record.full_name = "";
  EXPECT_TRUE(shows("DB <264>"));
}

TEST(Candidate, ItsDirectoryAndPartInThisRunDependOnItsState) {
  const std::string directory = "\tdirectory : /opt/db\n";
  const std::string in_this_run = "<265>\n";
  const struct {
    product_state state;
    bool has_directory;
    bool takes_part;
  } cases[] = {
      {product_state::SELECTED, false, true},
      {product_state::CONFIGURED, true, true},
      {product_state::ACCEPTED, true, false},
      {product_state::INSTALLED, true, false},
      {product_state::SELECTED_FOR_RECONFIGURATION, true, true},
      {product_state::INITIALISED, true, false},
  };
  for (const auto& [state, has_directory, takes_part] : cases) {
    EXPECT_EQ(offer(candidate(state)).out, HEADING + "\tdb\n" + (has_directory ? directory : "") +
                                               "\ttype      : sql\n\tversion   : 1.0\n" +
                                               (takes_part ? in_this_run : "") + ACCEPT);
  }
}

TEST(Candidate, ItsVersionLineLeavesZeroesOut) {
  const struct {
    release version;
    const char* line;
  } cases[] = {
      {{1, 0, 0, 0}, "1.0"},
      {{0, 1, 0, 0}, "0.1"},
      {{1, 2, 3, 0}, "1.2.3"},
      {{1, 2, 0, 4}, "1.2, patch 4"},
      {{1, 2, 3, 4}, "1.2.3, patch 4"},
      {{1, 2, -1, -1}, "1.2"},
      {{0, 0, 0, 0}, "unknown"},
      {{0, 0, 5, 6}, "unknown"},
      {{-1, 2, 0, 0}, "unknown"},
      {{2, -1, 0, 0}, "unknown"},
      {{-1, -1, -1, -1}, "unknown"},
      {{2147483647, 1, 0, 0}, "2147483647.1"},
  };
  for (const auto& [version, line] : cases) {
    product record;
    record.release = version;
    EXPECT_EQ(version_line(record), std::string("\tversion   : ") + line + "\n");
  }
}

TEST(PatchCandidate, HasItsOwnHeadingWithADoubledEnd) {
  product record = candidate();
  const std::string rest =
      "'.\n<281> :\n\n\tdb\n\tdirectory : /opt/db\n\tcategory  : DB\n\ttype      : sql\n";
  EXPECT_EQ(offer(record, std::nullopt).out,
            "\n<260> 'app version 2.0, patch 1' <269> 'app Original'.\n" + rest +
                "\tversion   : 1.0\n" + ACCEPT);
  record.release.patch = 2;
  EXPECT_EQ(offer(record, std::nullopt).out,
            "\n<260> 'app version 2.0, patch 1' <269> 'app Patch 2'.\n" + rest +
                "\tversion   : 1.0, patch 2\n" + ACCEPT);
  record.release.patch = -1;
  EXPECT_NE(offer(record, std::nullopt).out.find("'app Original'.\n"), std::string::npos);
}

TEST(Candidate, TheHeadingIsWrapped) {
  use_test_messages();
  set_message(RULER, "--------------------");
  const outcome seen =
      in_child("y\n", [] { return product_accept(app(), "main", candidate()) ? "" : ""; });
  EXPECT_TRUE(seen.out.starts_with("\n<260>  'app',  <261>\n'main',  <268>  'DB'\n<264>:\n\n"))
      << seen.out;
}

// A target with a question and an owner and group, where given.
target_dep make_target(const long_text& ask, const long_text& owner = std::nullopt,
                       const long_text& group = std::nullopt) {
  target_dep target;
  target.target = "main";
  target.ask = ask;
  target.fix_owner = owner;
  target.fix_group = group;
  return target;
}

// Returns whether the target was settled, and its state, such as "settled 2". Runs as an ordinary
// user in a directory where he can create files.
outcome decide(std::string_view typed, target_dep& target) {
  use_test_messages();
  const scratch_directory directory;
  open_to_everybody(".");
  return in_child_as_ordinary_user(typed, [&] {
    const bool settled = new_installation(product(), target);
    return (settled ? "settled " : "given up ") + std::to_string(static_cast<int>(target.install));
  });
}

outcome decide_again(std::string_view typed, target_dep& target) {
  use_test_messages();
  const scratch_directory directory;
  open_to_everybody(".");
  return in_child_as_ordinary_user(typed, [&] {
    re_installation(product(), target);
    return std::to_string(static_cast<int>(target.install));
  });
}

TEST(NewTarget, IsAskedAbout) {
  target_dep target = make_target("Install 100%s?");
  EXPECT_EQ(decide("y\n", target).out, "Install 100%s? <35>\n");
  EXPECT_EQ(decide("y\n", target).result, "settled 2");
  EXPECT_EQ(decide("\n", target).result, "settled 2");
  target.install = target_state::WANTED;
  EXPECT_EQ(decide("n\n", target).result, "settled 1");
}

TEST(NewTarget, AnEmptyQuestionIsAsked) {
  target_dep target = make_target("");
  EXPECT_EQ(decide("n\n", target).out, " <35>\n");
  EXPECT_EQ(decide("n\n", target).result, "settled 1");
}

TEST(NewTarget, WithoutQuestionIsInstalled) {
  target_dep target = make_target(std::nullopt);
  const outcome seen = decide("", target);
  EXPECT_EQ(seen.out, "\n<92> 'main' ...\n");
  EXPECT_EQ(seen.result, "settled 2");
}

TEST(NewTarget, WithoutQuestionIsGivenUpWithoutRights) {
  target_dep target = make_target(std::nullopt, std::nullopt, "no-such-group");
  const outcome seen = decide("", target);
  EXPECT_EQ(seen.out, "\n<92> 'main' ...\n<97> <99> 'no-such-group' !\n");
  EXPECT_EQ(seen.result, "given up 1");
  target.install = target_state::WANTED;
  EXPECT_EQ(decide("", target).result, "given up 2");
}

TEST(NewTarget, OnceRefusedOnlyANoEndsTheQuestions) {
  target_dep target = make_target("Sure?", "root");
  const std::string turn = "Sure? <35>\n<97> <98> 'root' !\n<90> 'main' !\n";
  const outcome seen = decide("y\ny\nn\n", target);
  EXPECT_EQ(seen.out, turn + turn + "Sure? <35>\n");
  EXPECT_EQ(seen.result, "settled 1");
  EXPECT_EQ(decide("y\n", target).out, turn + "Sure? <35>\n<299>");
}

TEST(NewTarget, ALaterYesWithRightsDoesNotEndTheQuestions) {
  use_test_messages();
  const scratch_directory directory;
  target_dep target = make_target("Sure?", std::nullopt, "group");
  // The first group change fails, all others work.
  write_program("bin/chgrp", "test -f failed || { touch failed; exit 1; }\n");
  const outcome seen = in_child("y\ny\ny\nn\n", [&] {
    put_first_on_path(directory.path() + "/bin");
    new_installation(product(), target);
    return std::to_string(static_cast<int>(target.install));
  });
  const std::string question = "Sure? <35>\n";
  EXPECT_EQ(seen.out,
            question + "<97> <99> 'group' !\n<90> 'main' !\n" + question + question + question);
  EXPECT_EQ(seen.result, "1");
}

TEST(NewTarget, AnEmptyFixedOwnerIsCheckedAsAnEmptyName) {
  target_dep target = make_target(std::nullopt, "", "");
  EXPECT_EQ(decide("", target).out, "\n<92> 'main' ...\n<97> <98> '' !\n<97> <99> '' !\n");
}

TEST(NewTarget, FixedNamesAreCheckedAsOneName) {
  target_dep target = make_target(std::nullopt, "root root", "a b");
  EXPECT_EQ(decide("", target).out,
            "\n<92> 'main' ...\n<97> <98> 'root root' !\n<97> <99> 'a b' !\n");
}

TEST(NewTarget, TheSuperuserMayGiveItToAnyOwner) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_SUPERUSER;
  use_test_messages();
  target_dep target = make_target("Sure?", "root");
  const outcome seen = in_child("y\n", [&] {
    new_installation(product(), target);
    return std::to_string(static_cast<int>(target.install));
  });
  EXPECT_EQ(seen.result, "2");
  EXPECT_EQ(seen.out, "Sure? <35>\n");
}

TEST(TargetAgain, IsAskedAboutByItsOwnQuestion) {
  target_dep target = make_target("Install?");
  EXPECT_EQ(decide_again("y\n", target).out, "Install? <35>\n");
  target.re_ask = "Again?";
  EXPECT_EQ(decide_again("y\n", target).out, "Again? <35>\n");
  EXPECT_EQ(decide_again("y\n", target).result, "2");
  target.install = target_state::WANTED;
  EXPECT_EQ(decide_again("n\n", target).result, "1");
  target.re_ask = "";
  EXPECT_EQ(decide_again("y\n", target).out, " <35>\n");
}

TEST(TargetAgain, WithoutQuestionIsNotInstalled) {
  target_dep target = make_target(std::nullopt, "root");
  target.install = target_state::WANTED;
  const outcome seen = decide_again("", target);
  EXPECT_EQ(seen.out, "");
  EXPECT_EQ(seen.result, "1");
}

TEST(TargetAgain, ARefusalAsksAgain) {
  target_dep target = make_target("Install?", "root", "no-such-group");
  const std::string turn =
      "Install? <35>\n<97> <98> 'root' !\n<97> <99> 'no-such-group' !\n<90> 'main' !\n";
  const outcome seen = decide_again("y\ny\nn\n", target);
  EXPECT_EQ(seen.out, turn + turn + "Install? <35>\n");
  EXPECT_EQ(seen.result, "1");
}

TEST(TargetAgain, ALaterYesWithRightsEndsTheQuestions) {
  use_test_messages();
  const scratch_directory directory;
  target_dep target = make_target("Sure?", std::nullopt, "group");
  write_program("bin/chgrp", "test -f failed || { touch failed; exit 1; }\n");
  const outcome seen = in_child("y\ny\n", [&] {
    put_first_on_path(directory.path() + "/bin");
    re_installation(product(), target);
    return std::to_string(static_cast<int>(target.install));
  });
  EXPECT_EQ(seen.result, "2");
}

TEST(Targets, TheEndOfInputQuits) {
  target_dep target = make_target("Sure?", "root");
  for (const char* typed : {"", "y\n", "y", "q\n"}) {
    EXPECT_FALSE(decide(typed, target).returned);
    EXPECT_FALSE(decide_again(typed, target).returned);
  }
}

}  // namespace
}  // namespace morvane
