#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "support/child.h"
#include "tree/digest.h"
#include "tree/directory.h"
#include "tree/walk.h"

namespace morvane {
namespace {

constexpr const char* DIGEST_OF_ABC =
    "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

std::string paths_of(const walked_tree& tree) {
  std::string paths;
  for (const tree_file& file : tree.files) {
    paths += std::string(kind_name(file.status.kind)) + " " + file.path + "\n";
  }
  return paths;
}

TEST(Tree, IsSeenWithoutFollowingLinks) {
  const scratch_directory scratch;
  write_file("a/file", "abc");
  write_file("outside/hidden", "");
  std::filesystem::create_symlink("../outside", "a/link");
  ASSERT_EQ(mkfifo("a/pipe", 0600), 0);
  const walked_tree tree = walk(open_directory(scratch.path() + "/a"));
  EXPECT_EQ(paths_of(tree), "file file\nlink link\nother pipe\n");
  EXPECT_TRUE(tree.faults.empty());
  EXPECT_EQ(tree.files[1].status.target, "../outside");
}

TEST(Tree, TellsModeAndSize) {
  const scratch_directory scratch;
  write_file("file", "abc");
  ASSERT_EQ(chmod("file", 04711), 0);
  const walked_tree tree = walk(open_directory(scratch.path()));
  ASSERT_EQ(tree.files.size(), 1U);
  EXPECT_EQ(tree.files[0].status.mode, 04711U);
  EXPECT_EQ(tree.files[0].status.size, 3U);
  EXPECT_EQ(tree.files[0].status.owner, geteuid());
}

TEST(Tree, IsNotEnteredWhereNotWanted) {
  const scratch_directory scratch;
  write_file("a/file", "");
  write_file("b/file", "");
  const walked_tree tree =
      walk(open_directory(scratch.path()), [](const tree_file& file) { return file.path != "a"; });
  EXPECT_EQ(paths_of(tree), "directory a\ndirectory b\nfile b/file\n");
}

TEST(Tree, ThatIsTooDeepIsAFault) {
  const scratch_directory scratch;
  std::string deep = "d";
  for (std::size_t i = 1; i < DEEPEST_DIRECTORY; ++i) deep += "/d";
  std::filesystem::create_directories(deep);
  EXPECT_EQ(walk(open_directory(scratch.path())).faults.size(), 1U);
  std::filesystem::remove(deep);
  EXPECT_TRUE(walk(open_directory(scratch.path())).faults.empty());
}

TEST(Tree, ThatCannotBeReadIsAFault) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser reads everything";
  const scratch_directory scratch;
  std::filesystem::create_directory("closed");
  ASSERT_EQ(chmod("closed", 0), 0);
  const walked_tree tree = walk(open_directory(scratch.path()));
  ASSERT_EQ(tree.faults.size(), 1U);
  EXPECT_EQ(tree.faults[0].path, "closed");
  ASSERT_EQ(chmod("closed", 0700), 0);
}

TEST(Directory, IsNotReachedThroughALink) {
  const scratch_directory scratch;
  std::filesystem::create_directories("real/below");
  std::filesystem::create_directory_symlink("real", "link");
  const descriptor here = open_directory(scratch.path());
  EXPECT_TRUE(open_below(here, "real/below").is_open());
  EXPECT_TRUE(open_below(here, ".").is_open());
  EXPECT_FALSE(open_below(here, "link").is_open());
  EXPECT_FALSE(open_below(here, "link/below").is_open());
  EXPECT_FALSE(open_below(here, "real/..").is_open());
}

TEST(Directory, OfAProductMayBeNamedByALink) {
  const scratch_directory scratch;
  std::filesystem::create_directories("real/below");
  std::filesystem::create_directory_symlink("real", "link");
  EXPECT_TRUE(open_directory(scratch.path() + "/link/below").is_open());
  EXPECT_FALSE(open_directory(scratch.path() + "/gone").is_open());
}

TEST(Directory, OpensNothingButPlainFiles) {
  const scratch_directory scratch;
  write_file("d/file", "abc");
  std::filesystem::create_symlink("file", "d/link");
  ASSERT_EQ(mkfifo("d/pipe", 0600), 0);
  const descriptor here = open_directory(scratch.path());
  EXPECT_TRUE(open_file_below(here, "d/file").is_open());
  EXPECT_FALSE(open_file_below(here, "d/link").is_open());
  EXPECT_FALSE(open_file_below(here, "d/pipe").is_open());
  EXPECT_FALSE(open_file_below(here, "d").is_open());
}

TEST(Directory, HasANormalPath) {
  const std::vector<std::pair<std::string, std::optional<std::string>>> rows = {
      {"/", "/"},     {"//", "/"}, {"/opt/app", "/opt/app"}, {"/opt//app/", "/opt/app"},
      {".", "."},     {"", "."},   {"./a/./b", "a/b"},       {"a/", "a"},
      {"a/../b", {}}, {"/..", {}}, {"..a/b..", "..a/b.."}};
  for (const auto& [path, normal] : rows) EXPECT_EQ(normal_path(path), normal) << path;
}

TEST(Directory, SplitsAPathAtItsLastSlash) {
  EXPECT_EQ(split("a/b/c").above, "a/b");
  EXPECT_EQ(split("a/b/c").name, "c");
  EXPECT_EQ(split("c").above, ".");
  EXPECT_EQ(split("c").name, "c");
}

TEST(Digest, IsSha256) {
  EXPECT_EQ(digest_of("abc"), DIGEST_OF_ABC);
  EXPECT_EQ(digest_of(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_TRUE(is_digest(DIGEST_OF_ABC));
  EXPECT_FALSE(is_digest("abc"));
  EXPECT_FALSE(is_digest(std::string(64, 'A')));
}

TEST(Digest, OfManyFilesIsThatOfEach) {
  const scratch_directory scratch;
  std::vector<std::string> paths;
  for (int i = 0; i < 50; ++i) {
    paths.push_back("d/" + std::to_string(i));
    write_file(paths.back(), std::string(static_cast<std::size_t>(i) * 5000, 'x'));
  }
  write_file("abc", "abc");
  paths.insert(paths.end(), {"abc", "gone", "d"});
  const auto digests = digests_below(open_directory(scratch.path()), paths);
  ASSERT_EQ(digests.size(), paths.size());
  for (std::size_t i = 0; i < 50; ++i) EXPECT_EQ(digests[i], digest_of(read_file(paths[i])));
  EXPECT_EQ(digests[50], DIGEST_OF_ABC);
  EXPECT_FALSE(digests[51]);
  EXPECT_FALSE(digests[52]);
}

}  // namespace
}  // namespace morvane
