#include "depend/links_probe.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

const std::string EXPLANATION = "\n<104>\n<105>\n<106> ";

outcome find_links(std::string_view typed, const std::string& links,
                   std::optional<std::string_view> base) {
  return in_child(typed, [&] { return get_links_path(links, base); });
}

TEST(LinksPath, IsTheProposalThatNamesTheFile) {
  use_test_messages();
  const scratch_directory directory;
  write_file("a/links.conf", "");
  const outcome seen = find_links("", "a/links.conf", "b");
  EXPECT_EQ(seen.result, "a/links.conf");
  EXPECT_EQ(seen.written(), "");
}

TEST(LinksPath, IsTheDefaultWhereTheProposalNamesSomethingElse) {
  use_test_messages();
  const scratch_directory directory;
  set_message(LINKS_DEFAULT_PATH, "default/links.conf");
  write_file("default/links.conf", "");
  write_file("links.conf/links.conf", "");
  write_file("x/links.config", "");
  for (const char* links : {"", "x", "x/links.config", "links.conf/links.conf"}) {
    EXPECT_EQ(find_links("", links, "b").result, "default/links.conf") << links;
  }
}

TEST(LinksPath, IsBelowTheBaseWhereThereIsNoDefault) {
  use_test_messages();
  const scratch_directory directory;
  write_file("base/config/links.conf", "");
  EXPECT_EQ(find_links("", "", "base").result, "base/config/links.conf");
  EXPECT_EQ(find_links("", "no/links.conf", "base").result, "base/config/links.conf");
}

TEST(LinksPath, IsAskedForWhereItIsNowhere) {
  use_test_messages();
  const scratch_directory directory;
  const std::string answer = directory.path() + "/mine.links.conf";
  write_file(answer, "");
  const outcome seen = find_links(answer + "\n", "", "base");
  EXPECT_EQ(seen.out, EXPLANATION + "(base/config/links.conf): ");
  EXPECT_EQ(seen.result, answer);
}

TEST(LinksPath, HasAStandardDirectoryWithoutBase) {
  if (std::filesystem::exists("/usr/bin/links/config/links.conf")) {
    GTEST_SKIP() << "the tool is installed here";
  }
  use_test_messages();
  EXPECT_EQ(find_links("q\n", "", std::nullopt).out,
            EXPLANATION + "(/usr/bin/links/config/links.conf): <299>");
}

TEST(LinksPath, EveryWrongAnswerHasItsReply) {
  use_test_messages();
  const scratch_directory directory;
  write_file("sub/links.conf", "");
  const std::string good = directory.path() + "/sub/links.conf";
  const std::string again = "<107>\n(base/config/links.conf): ";
  const std::string again_not_there = "<107>\n( base/config/links.conf ): ";
  const struct {
    std::string answer;
    std::string reply;
  } cases[] = {
      {"sub/links.conf", again},
      {"links.conf", again},
      {"", again},
      {"/no/such/links.conf", "<109> '/no/such/links.conf'!\n" + again_not_there},
      {"/no/such", "<110> '/no/such'!\n" + again},
      {directory.path() + "/sub", "<110> '" + directory.path() + "/sub'!\n" + again},
      {"/links.conf/links.conf", "<110> '/links.conf/links.conf'!\n" + again},
      {good + "x", "<110> '" + good + "x'!\n" + again},
      {std::string("\0", 1), "<110> ''!\n" + again},
  };
  for (const auto& [answer, reply] : cases) {
    const outcome seen = find_links(answer + "\n" + good + "\n", "", "base");
    EXPECT_EQ(seen.out, EXPLANATION + "(base/config/links.conf): " + reply) << answer;
    EXPECT_EQ(seen.result, good) << answer;
  }
}

TEST(LinksPath, EnterAloneMeansTheDefault) {
  use_test_messages();
  const scratch_directory directory;
  const std::string base = directory.path() + "/base";
  const std::string shown_path = base + "/config/links.conf";
  const outcome seen = find_links("\nq\n", "", base);
  EXPECT_EQ(seen.out, EXPLANATION + "(" + shown_path + "): <109> '" + shown_path + "'!\n<107>\n( " +
                          shown_path + " ): <299>");
}

TEST(LinksPath, TheEndOfInputQuits) {
  use_test_messages();
  for (const char* typed : {"", "x\n", "/no/such/links.conf\n", "relative"}) {
    const outcome seen = find_links(typed, "", "base");
    EXPECT_FALSE(seen.returned);
    EXPECT_TRUE(seen.out.ends_with("<299>"));
  }
}

TEST(LinksPath, IsNotCut) {
  use_test_messages();
  const scratch_directory directory;
  const std::string base = std::string(100, 'b') + "/" + std::string(100, 'c');
  write_file(base + "/config/links.conf", "");
  EXPECT_EQ(find_links("", "", base).result, base + "/config/links.conf");
}

std::string version_of_links(const std::string& links) {
  const outcome seen = in_child("", [&] { return shown(get_kemo_version(links)); });
  EXPECT_EQ(seen.out, "");
  return seen.result;
}

TEST(LinksVersion, IsToldByTheStatusOfTheProbe) {
  use_test_messages();
  const scratch_directory directory;
  EXPECT_EQ(version_of_links("true"), "1.3.0.0");
  EXPECT_EQ(version_of_links("false"), "1.2.0.0");
  EXPECT_EQ(version_of_links("./no-such-program"), "1.2.0.0");
}

TEST(LinksVersion, TheCommandIsThePathAndThreeMessages) {
  use_test_messages();
  const scratch_directory directory;
  set_message(LINKS_COMMAND_1, "; test -f a");
  set_message(LINKS_COMMAND_2, "b");
  set_message(LINKS_COMMAND_3, "c && exit 0; exit 7");
  EXPECT_EQ(version_of_links("true"), "1.2.0.0");
  write_file("abc", "");
  EXPECT_EQ(version_of_links("true"), "1.3.0.0");
}

TEST(LinksVersion, ThePathIsOneWordOfTheCommand) {
  use_test_messages();
  const scratch_directory directory;
  set_message(LINKS_COMMAND_1, " 2>/dev/null");
  EXPECT_EQ(version_of_links("touch evil; true"), "1.2.0.0");
  EXPECT_FALSE(std::filesystem::exists("evil"));
}

}  // namespace
}  // namespace morvane
