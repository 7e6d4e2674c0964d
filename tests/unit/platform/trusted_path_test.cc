#include "platform/trusted_path.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "support/child.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;

constexpr uid_t SOMEBODY_ELSE = 65533;
constexpr gid_t SOME_GROUP = 65533;

// A directory whose own way is trusted: below the scratch directory, which is below /tmp.
class trusted_path : public testing::Test {
 protected:
  trusted_path() {
    fs::create_directories("a/b");
    chmod("a", 0755);
    chmod("a/b", 0755);
  }

  std::string path(std::string_view below) const { return here_.path() + "/" + std::string(below); }

  bool is_trusted(std::string_view below) const { return cannot_be_redirected(path(below)); }

  scratch_directory here_;
};

#define NEEDS_SUPERUSER() \
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser can give files away"

TEST_F(trusted_path, IsTheRootAndWhatBelongsToThisUser) {
  EXPECT_TRUE(cannot_be_redirected("/"));
  EXPECT_TRUE(is_trusted("a/b"));
  EXPECT_TRUE(is_trusted("a//b/"));
  EXPECT_TRUE(is_trusted("./a/../a/./b/.."));
  EXPECT_TRUE(cannot_be_redirected("/../" + path("a")));
}

TEST_F(trusted_path, IsNoFileAndNothing) {
  write_file("file", "");
  EXPECT_FALSE(is_trusted("file"));
  EXPECT_FALSE(is_trusted("file/.."));
  EXPECT_FALSE(is_trusted("nothing"));
  EXPECT_FALSE(is_trusted("a/nothing/../b"));
}

TEST_F(trusted_path, HasNoDirectoryThatOthersCanWriteTo) {
  chmod("a", 0757);
  EXPECT_FALSE(is_trusted("a/b"));
  chmod("a", 01757);
  EXPECT_TRUE(is_trusted("a/b"));
  chmod("a", 0755);
  chmod("a/b", 0702);
  EXPECT_FALSE(is_trusted("a/b"));
  EXPECT_TRUE(is_trusted("a"));
}

TEST_F(trusted_path, HasNoDirectoryThatAForeignGroupCanWriteTo) {
  chmod("a", 0775);
  EXPECT_TRUE(is_trusted("a/b"));  // the effective group, or group 0
  NEEDS_SUPERUSER();
  ASSERT_EQ(chown("a", 0, SOME_GROUP), 0);
  EXPECT_FALSE(is_trusted("a/b"));
  chmod("a", 01775);
  EXPECT_TRUE(is_trusted("a/b"));
  chmod("a", 0755);
  EXPECT_TRUE(is_trusted("a/b"));
  ASSERT_EQ(chown("a", 0, 0), 0);
  chmod("a", 0775);
  EXPECT_EQ(in_child("",
                     [&] {
                       if (setegid(SOME_GROUP) != 0) return "no such group";
                       return is_trusted("a/b") ? "trusted" : "not trusted";
                     })
                .result,
            "trusted");
}

TEST_F(trusted_path, HasNoDirectoryOfAnotherUser) {
  NEEDS_SUPERUSER();
  ASSERT_EQ(chown("a", SOMEBODY_ELSE, 0), 0);
  EXPECT_FALSE(is_trusted("a/b"));
  EXPECT_EQ(in_child("",
                     [&] {
                       chmod("a", 0755);
                       chmod(here_.path().c_str(), 0755);
                       if (seteuid(SOMEBODY_ELSE) != 0) return "no such user";
                       return is_trusted("a/b") ? "trusted" : "not trusted";
                     })
                .result,
            "trusted");
}

TEST_F(trusted_path, FollowsLinksAndLooksAtWhatTheyLeadTo) {
  fs::create_symlink("a", "relative");
  fs::create_symlink(path("a"), "absolute");
  fs::create_symlink("../a/b", "a/up");
  fs::create_symlink("/", "root");
  EXPECT_TRUE(is_trusted("relative/b"));
  EXPECT_TRUE(is_trusted("absolute/b"));
  EXPECT_TRUE(is_trusted("a/up"));
  EXPECT_TRUE(is_trusted("root"));
  EXPECT_TRUE(is_trusted("relative/up/../b"));
  fs::create_directories("open/b");
  chmod("open", 0777);
  fs::create_symlink("../open/b", "a/through");
  EXPECT_FALSE(is_trusted("a/through"));
}

TEST_F(trusted_path, HasNoLinkOfAnotherUser) {
  NEEDS_SUPERUSER();
  fs::create_symlink("a", "link");
  ASSERT_EQ(lchown("link", SOMEBODY_ELSE, 0), 0);
  EXPECT_FALSE(is_trusted("link/b"));
}

TEST_F(trusted_path, HasAnEndOfItsLinks) {
  fs::create_symlink("loop", "loop");
  EXPECT_FALSE(is_trusted("loop"));
  fs::create_symlink("a", "link0");
  for (int n = 1; n < 41; ++n) {
    fs::create_symlink("link" + std::to_string(n - 1), "link" + std::to_string(n));
  }
  EXPECT_TRUE(is_trusted("link39"));   // 40 links
  EXPECT_FALSE(is_trusted("link40"));  // 41 links
}

}  // namespace
}  // namespace morvane
