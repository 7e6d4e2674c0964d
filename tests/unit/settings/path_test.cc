#include "settings/path.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/child.h"
#include "support/invented_names.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

const std::string NOT_ABSOLUTE = "\n<130>\n";
const std::string QUESTION = "Where:\n";

constexpr path_demands CREATE = {.offer_to_create = true, .insist = true};
constexpr path_demands WRITABLE = {.writable = true};
constexpr path_demands INSIST = {.insist = true};

// A ruler so wide that no question of these tests is wrapped.
void use_wide_messages() {
  use_test_messages();
  set_message(RULER, std::string(149, '-'));
}

std::string with_default(const std::string& proposal) {
  return "Where:\n(" + proposal + ") \n";
}

std::string special_path(const std::string& path) {
  return "morvane : error : path '" + path +
         "' holds characters that make or the shell would interpret\n";
}

// Returns the path and whether it exists, such as "/tmp there".
outcome ask(std::string_view typed, std::string_view proposal = "",
            const path_demands& demands = {}) {
  use_wide_messages();
  return in_child(typed, [&] {
    const chosen_path chosen =
        get_valid_path({.number = PATH_QUESTION, .text = "Where", .proposal = proposal}, demands);
    return chosen.path + (chosen.exists ? " there" : " missing");
  });
}

std::string missing_question(const std::string& path) {
  return "<129> '" + path + "'   <132>  <35>\n";
}

TEST(PathText, IsNormalised) {
  const struct {
    const char* path;
    const char* normal;
  } cases[] = {
      {"/", "/"},           {"//", "/"},       {"///", "/"},           {"/opt//x///", "/opt/x"},
      {"/opt/x", "/opt/x"}, {"//opt", "/opt"}, {"////a//b", "/a/b"},   {"/a/", "/a"},
      {"/a//b", "/a/b"},    {"/a///", "/a"},   {"/./../a", "/./../a"}, {"/a b//", "/a b"},
  };
  for (const auto& [path, normal] : cases) EXPECT_EQ(normalise_path(path), normal) << path;
}

TEST(PathQuestion, EnterAloneTakesTheDefault) {
  EXPECT_EQ(ask("\n", "/tmp").out, with_default("/tmp"));
  EXPECT_EQ(ask("\n", "/tmp").result, "/tmp there");
  EXPECT_EQ(ask("/\n", "/tmp").result, "/ there");
  EXPECT_EQ(ask("\n", "/tmp//").result, "/tmp there");
  EXPECT_EQ(ask("\n", "~").out, with_default("~") + ask("~\n").out.substr(QUESTION.size()));
}

TEST(PathQuestion, EnterAloneWithoutDefaultIsNoAbsolutePath) {
  const outcome seen = ask("\n/tmp\n");
  EXPECT_EQ(seen.out, QUESTION + NOT_ABSOLUTE + QUESTION);
  EXPECT_EQ(seen.result, "/tmp there");
}

TEST(PathQuestion, ARelativeAnswerIsNeverReturned) {
  const outcome seen = ask("opt/x\n./x\n/tmp/\n");
  EXPECT_EQ(seen.out, QUESTION + NOT_ABSOLUTE + QUESTION + NOT_ABSOLUTE + QUESTION);
  EXPECT_EQ(seen.result, "/tmp there");
  EXPECT_EQ(ask("\nq\n", "relative").out,
            with_default("relative") + NOT_ABSOLUTE + with_default("relative") + "<299>");
}

TEST(PathQuestion, ATildeIsTheHomeOfTheUser) {
  const passwd* self = getpwuid(getuid());
  if (self == nullptr || self->pw_dir[0] != '/') GTEST_SKIP() << "the user has no home directory";
  const std::string home = normalise_path(self->pw_dir);
  const auto path_of = [](const std::string& answer) {
    const std::string result = ask(answer + "\n").result;
    return result.substr(0, result.find(' '));
  };
  EXPECT_EQ(path_of("~"), home);
  EXPECT_EQ(path_of("~/"), home);
  EXPECT_EQ(path_of("~//"), home);
  EXPECT_EQ(path_of("~/sub/"), normalise_path(home + "/sub"));
  EXPECT_EQ(path_of(std::string("~") + self->pw_name), home);
}

TEST(PathQuestion, ATildeIsTheHomeOfWhoStartedTheProgram) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_TWO_USERS;
  use_wide_messages();
  const auto home = [] { return get_valid_path({PATH_QUESTION, "Where"}, {}).path; };
  const std::string home_of_superuser = getpwuid(0)->pw_dir;
  const std::string home_of_nobody = getpwuid(NOBODY)->pw_dir;
  ASSERT_NE(home_of_superuser, home_of_nobody);
  EXPECT_EQ(in_child_of_two_users(NOBODY, 0, "~\n", home).result, home_of_nobody);
  EXPECT_EQ(in_child_of_two_users(0, NOBODY, "~\n", home).result, home_of_superuser);
}

TEST(PathQuestion, AHomeThatIsNotAbsoluteIsAskedForAgain) {
  const scratch_directory directory;
  std::filesystem::create_directory("home");
  for (const path_demands& demands : {path_demands{}, WRITABLE, INSIST}) {
    set_home_of_invented("home");
    const outcome there = ask("~x\n/tmp\n", "", demands);
    EXPECT_EQ(there.out, QUESTION + QUESTION);
    EXPECT_EQ(there.result, "/tmp there");
    set_home_of_invented("elsewhere");
    const outcome missing = ask("~x/y\n/tmp\n", "", demands);
    set_home_of_invented("/home/x");
    EXPECT_EQ(missing.out, QUESTION + "<129> 'elsewhere/y'\n" + QUESTION);
    EXPECT_EQ(missing.result, "/tmp there");
  }
}

TEST(PathQuestion, ATildeAndANameAreThatUsersHome) {
  const passwd* daemon = getpwnam("daemon");
  if (daemon == nullptr || daemon->pw_dir[0] != '/') GTEST_SKIP() << "no user daemon";
  const std::string home = normalise_path(daemon->pw_dir);
  EXPECT_EQ(ask("~daemon/\n").result.substr(0, home.size()), home);
  EXPECT_EQ(ask("~daemon/no/such/\n").result, home + "/no/such missing");
}

TEST(PathQuestion, AnUnknownUserIsAskedAgainWhateverTheDemands) {
  for (const path_demands& demands : {path_demands{}, INSIST}) {
    const outcome seen = ask("~no-such-user/x//\n/tmp\n", "", demands);
    EXPECT_EQ(seen.out, QUESTION + "<131> '~no-such-user/x//' (<134>).\n" + QUESTION);
    EXPECT_EQ(seen.result, "/tmp there");
  }
  // The user part is not known, so that the rest is of no interest.
  EXPECT_EQ(ask("~no-such-user/a b\n/tmp\n").err, "");
}

TEST(PathQuestion, SpecialCharactersAreRefusedOnce) {
  for (const char* path : {"/tmp/a b", "/tmp/$x", "/tmp/x;y", "/a:b", "/a\tb", "/a\177"}) {
    const outcome seen = ask(std::string(path) + "//\n/tmp\n");
    EXPECT_EQ(seen.err, special_path(path));
    EXPECT_EQ(seen.out, QUESTION + NOT_ABSOLUTE + QUESTION);
  }
  EXPECT_EQ(ask("\n/tmp\n", "/a b").err, special_path("/a b"));
  EXPECT_EQ(ask("/tmp/\xc3\xa4\n").result, "/tmp/\xc3\xa4 missing");
}

TEST(PathQuestion, AHomeDirectoryIsTestedOnceItIsExpanded) {
  const passwd* self = getpwuid(getuid());
  if (self == nullptr || self->pw_dir[0] != '/') GTEST_SKIP() << "the user has no home directory";
  EXPECT_EQ(ask("~//a b/\n/tmp\n").err, special_path(normalise_path(self->pw_dir) + "/a b"));
}

TEST(PathQuestion, TakesPathsOf127Bytes) {
  const std::string longest = "/" + std::string(126, 'x');
  EXPECT_EQ(ask(longest + "\n").result, longest + " missing");
  EXPECT_EQ(ask(longest + "///\n").result, longest + " missing");
  EXPECT_EQ(ask("//" + longest + "\n").result, longest + " missing");
  const outcome seen = ask(longest + "y\n/tmp\n");
  EXPECT_EQ(seen.out, QUESTION + NOT_ABSOLUTE + QUESTION);
  EXPECT_EQ(seen.err, "");
  const outcome both = ask(longest + "y;\n/tmp\n");
  EXPECT_EQ(both.out, QUESTION + NOT_ABSOLUTE + QUESTION);
  EXPECT_EQ(both.err, special_path(longest + "y;"));
}

TEST(PathQuestion, AMissingDirectoryIsToldOf) {
  const outcome seen = ask("/no/such\n");
  EXPECT_EQ(seen.out, QUESTION + "<129> '/no/such'\n");
  EXPECT_EQ(seen.result, "/no/such missing");
  const outcome insisting = ask("/no/such\n/tmp\n", "", INSIST);
  EXPECT_EQ(insisting.out, QUESTION + "<129> '/no/such'\n" + QUESTION);
  EXPECT_EQ(insisting.result, "/tmp there");
}

TEST(PathQuestion, AMissingDirectoryIsCreatedOnYes) {
  const scratch_directory directory;
  const std::string path = directory.path() + "/a/b";
  const outcome seen = ask(path + "\ny\n", "", CREATE);
  EXPECT_EQ(seen.out, QUESTION + missing_question(path));
  EXPECT_EQ(seen.result, path + " there");
  EXPECT_EQ(std::filesystem::status("a/b").permissions(),
            static_cast<std::filesystem::perms>(0755));
}

TEST(PathQuestion, ADirectoryThatAppearsBeforeTheYesIsTakenAsItIs) {
  const scratch_directory directory;
  use_wide_messages();
  const std::string path = directory.path() + "/new";
  const outcome seen = in_child("", [&] {
    // The directory is made once the question is on the screen, and the yes comes behind that.
    int answers[2];
    int screen[2];
    if (pipe(answers) != 0 || pipe(screen) != 0) return std::string("no pipes");
    if (fork() == 0) {
      std::string shown;
      dprintf(answers[1], "%s\n", path.c_str());
      for (char c; shown.find("<132>") == std::string::npos && read(screen[0], &c, 1) == 1;)
        shown += c;
      mkdir(path.c_str(), 0700);
      dprintf(answers[1], "y\n");
      std::_Exit(0);
    }
    dup2(answers[0], STDIN_FILENO);
    dup2(screen[1], STDOUT_FILENO);
    return get_valid_path({PATH_QUESTION, "Where"}, CREATE).path;
  });
  EXPECT_EQ(seen.result, path);
  EXPECT_EQ(std::filesystem::status("new").permissions(), std::filesystem::perms(0700));
}

TEST(PathQuestion, ADirectoryThatIsNotCreatedIsAskedForAgainWhereInsistedOn) {
  const std::string path = "/no/such";
  EXPECT_EQ(ask(path + "\nn\n/tmp\n", "", CREATE).out,
            QUESTION + missing_question(path) + QUESTION);
  const outcome seen = ask(path + "\nn\n", "", {.offer_to_create = true});
  EXPECT_EQ(seen.result, path + " missing");
}

TEST(PathQuestion, AFailedCreationIsToldOf) {
  const scratch_directory directory;
  write_file("file", "");
  const std::string path = directory.path() + "/file/x";
  const outcome seen = ask(path + "\ny\n/tmp\n", "", CREATE);
  EXPECT_EQ(seen.out, QUESTION + missing_question(path) + "<131> '" + path + "'.\n" + QUESTION);
  EXPECT_EQ(seen.result, "/tmp there");
}

TEST(PathQuestion, ExistenceFollowsLinks) {
  const scratch_directory directory;
  std::filesystem::create_symlink("/no/such", "dangling");
  std::filesystem::create_symlink("/tmp", "good");
  write_file("file", "");
  std::filesystem::permissions("file", std::filesystem::perms::none);
  EXPECT_EQ(ask(directory.path() + "/dangling\n").result, directory.path() + "/dangling missing");
  EXPECT_EQ(ask(directory.path() + "/good\n").result, directory.path() + "/good there");
  EXPECT_EQ(ask(directory.path() + "/file\n").result, directory.path() + "/file there");
}

TEST(PathQuestion, ADirectoryThatCannotBeWrittenIsAskedForAgain) {
  const scratch_directory directory;
  open_to_everybody(".");
  std::filesystem::create_directory("mine");
  std::filesystem::permissions("mine", static_cast<std::filesystem::perms>(0555));
  use_wide_messages();
  const std::string mine = directory.path() + "/mine";
  // Whoever owns a directory may touch it, so that the ordinary user needs another's.
  const std::string foreign = is_superuser() ? mine : "/";
  const outcome seen = in_child_as_ordinary_user(foreign + "\n" + directory.path() + "\n", [] {
    return get_valid_path({PATH_QUESTION, "Where"}, WRITABLE).path;
  });
  EXPECT_EQ(seen.out, QUESTION + "<133 " + foreign + ">\n" + QUESTION);
  EXPECT_EQ(seen.result, directory.path());
}

TEST(PathQuestion, TheWriteTestHoldsForMissingDirectoriesToo) {
  const outcome seen = ask("/no/such\n/tmp\n", "", WRITABLE);
  EXPECT_EQ(seen.out, QUESTION + "<129> '/no/such'\n<133 /no/such>\n" + QUESTION);
}

TEST(PathQuestion, TheQuitLetterAndTheEndOfInputEndTheProgram) {
  for (const char* typed : {"q\n", "Q\n", "", "/tmp", "/no/such\nq\n", "/no/such\n"}) {
    EXPECT_FALSE(ask(typed, "", CREATE).returned) << typed;
  }
}

TEST(PathQuestion, KeepsTheFirst1023BytesOfAnAnswer) {
  EXPECT_EQ(ask("/tmp" + std::string(1019, '/') + "x\n").result, "/tmp there");
  EXPECT_EQ(ask("/tmp" + std::string(1018, '/') + "x\n").result, "/tmp/x missing");
}

// Settles the path of `record` and returns it with its mark, such as "/tmp 1".
outcome settle(std::string_view typed, product& record, const char* variable = nullptr) {
  use_wide_messages();
  return in_child(typed, [&] {
    if (variable != nullptr) setenv("APP_PATH", variable, 1);
    get_product_path(&record);
    return std::string(record.path) + " " + shown(record.settled.path);
  });
}

product selected_product() {
  product record;
  record.install = product_state::SELECTED;
  record.id = "app";
  return record;
}

const std::string APP_QUESTION = "\n\n<127> 'app'!\n<128>:\n";

TEST(ProductPath, IsAskedFor) {
  const scratch_directory directory;
  product record = selected_product();
  const outcome seen = settle(directory.path() + "//\n", record);
  EXPECT_EQ(seen.out, APP_QUESTION);
  EXPECT_EQ(seen.result, directory.path() + " 1");
}

TEST(ProductPath, ShowsTheFullNameTheInfoAndTheDefault) {
  const scratch_directory directory;
  product record = selected_product();
  record.full_name = "The App";
  record.path_info = "Needs room.";
  record.path = directory.path();
  EXPECT_EQ(settle("\n", record).out,
            "\n\nNeeds room.\n\n<127> 'The App'!\n<128>:\n(" + directory.path() + ") \n");
}

TEST(ProductPath, MustExistAndBeWritable) {
  const scratch_directory directory;
  product record = selected_product();
  const std::string made = directory.path() + "/made";
  const outcome seen = settle("x\n/no/such\nn\n" + made + "\ny\n", record);
  EXPECT_EQ(seen.out, APP_QUESTION + NOT_ABSOLUTE + APP_QUESTION.substr(1) +
                          missing_question("/no/such") + APP_QUESTION.substr(1) +
                          missing_question(made));
  EXPECT_EQ(seen.result, made + " 1");
}

TEST(ProductPath, AVariableReplacesTheDefault) {
  const scratch_directory directory;
  const std::string here = directory.path();
  product record = selected_product();
  record.path = "/from/description";
  record.path_env_var = "APP_PATH";
  EXPECT_EQ(settle("\n", record, here.c_str()).result, here + " 1");
  EXPECT_EQ(settle(here + "\n", record, "").out, APP_QUESTION);
  EXPECT_NE(settle(here + "\n", record).out.find("(/from/description) "), std::string::npos);
}

TEST(ProductPath, AVariableIsCutTo127Bytes) {
  const scratch_directory directory;
  product record = selected_product();
  record.path_env_var = "APP_PATH";
  const std::string longest = "/" + std::string(126, 'x');
  for (const std::string& value : {longest, longest + "y"}) {
    const outcome seen = settle(directory.path() + "\n", record, value.c_str());
    EXPECT_NE(seen.out.find("\n(" + longest + ") \n"), std::string::npos);
  }
}

TEST(ProductPath, ASettledOneIsNotAskedFor) {
  for (const path_state mark : {path_state::CHOSEN, path_state::SCANNED}) {
    product record = selected_product();
    record.path = "/opt";
    record.settled.path = mark;
    const outcome seen = settle("", record);
    EXPECT_EQ(seen.out, "");
    EXPECT_EQ(seen.result, "/opt " + shown(mark));
  }
}

TEST(ProductPath, IsThatOfTheFirstSettledProductThatItPatches) {
  product record = selected_product();
  product absent, unsettled, settled;
  for (product* each : {&absent, &unsettled, &settled}) each->install = product_state::SELECTED;
  absent.install = product_state::AVAILABLE;
  absent.settled.path = settled.settled.path = path_state::CHOSEN;
  settled.path = "/opt/base";
  record.needed_patches = {{{1, nullptr}, {1, &absent}, {1, &unsettled}, {1, &settled}}};
  const outcome seen = settle("", record);
  EXPECT_EQ(seen.out, "");
  EXPECT_EQ(seen.result, "/opt/base 1");
}

TEST(ProductPath, IsAskedForWhereTheSupplierStandsBehindTheEndOfTheList) {
  product record = selected_product();
  product settled = selected_product();
  settled.settled.path = path_state::CHOSEN;
  record.needed_patches[1] = {1, &settled};
  EXPECT_EQ(settle("q\n", record).out, APP_QUESTION + "<299>");
}

TEST(ProductPath, OfNoProductIsAnError) {
  use_test_messages();
  product unused;
  for (product* record : {&unused, static_cast<product*>(nullptr)}) {
    const outcome seen = in_child("", [&] {
      get_product_path(record);
      return "";
    });
    EXPECT_EQ(seen.err, "morvane : get_product_path : error : invalid product\n");
    EXPECT_EQ(seen.out, "");
  }
}

}  // namespace
}  // namespace morvane
