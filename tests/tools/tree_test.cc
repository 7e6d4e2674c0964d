#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>

#include "support/child.h"
#include "tree/copy.h"
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
  std::vector<sized_file> files;
  for (std::size_t i = 0; i < 50; ++i) {
    files.push_back({"d/" + std::to_string(i), i * 5000});
    write_file(files.back().path, std::string(i * 5000, 'x'));
  }
  write_file("abc", "abc");
  files.insert(files.end(), {{"abc", 3}, {"abc", 2}, {"abc", 4}, {"gone", 0}, {"d", 0}});
  const auto digests = digests_below(open_directory(scratch.path()), files);
  ASSERT_EQ(digests.size(), files.size());
  for (std::size_t i = 0; i < 50; ++i) EXPECT_EQ(digests[i], digest_of(read_file(files[i].path)));
  EXPECT_EQ(digests[50], DIGEST_OF_ABC);
  for (std::size_t i = 51; i < digests.size(); ++i) EXPECT_FALSE(digests[i]) << files[i].path;
}

TEST(Digest, OfAFileThatGrewIsNotWaitedFor) {
  const scratch_directory scratch;
  write_file("file", "abc");
  constexpr off_t MORE_THAN_CAN_BE_READ = off_t{1} << 40;
  ASSERT_EQ(truncate("file", MORE_THAN_CAN_BE_READ), 0);
  EXPECT_EQ(digest_of_file(open_for_reading("file"), 3), std::nullopt);
  EXPECT_EQ(errno, EAGAIN);
}

TEST(Copy, HasAllThatTheFileHas) {
  const scratch_directory scratch;
  write_file("file", std::string(100'000, 'x'));
  ASSERT_EQ(chmod("file", 02751), 0);
  const descriptor here = open_directory(scratch.path());
  const auto status = look_at(here, "file");
  ASSERT_TRUE(status && copy_to(here, "file", *status, "copy"));
  const auto copy = look_at(here, "copy");
  EXPECT_EQ(read_file("copy"), read_file("file"));
  EXPECT_EQ(copy->mode, 02751U);
  EXPECT_EQ(copy->modified, status->modified);
  EXPECT_FALSE(copy_to(here, "file", *status, "copy"));
  EXPECT_EQ(errno, EEXIST);
}

TEST(Copy, OfHolesIsAHole) {
  const scratch_directory scratch;
  write_file("file", "abc");
  constexpr off_t MORE_THAN_CAN_BE_COPIED = off_t{1} << 40;
  ASSERT_EQ(truncate("file", MORE_THAN_CAN_BE_COPIED), 0);
  const descriptor here = open_directory(scratch.path());
  const auto status = look_at(here, "file");
  ASSERT_TRUE(status && copy_to(here, "file", *status, "copy")) << strerror(errno);
  EXPECT_EQ(look_at(here, "copy")->size, status->size);
  const descriptor copy = open_for_reading("copy");
  char begin[4] = "";
  EXPECT_EQ(read_uninterrupted(copy, begin, 4), 4);
  EXPECT_EQ(std::string(begin, 4), std::string("abc\0", 4));
}

TEST(Copy, IsOnlyMadeOfWhatWasLookedAt) {
  const scratch_directory scratch;
  write_file("file", "abc");
  const descriptor here = open_directory(scratch.path());
  const auto status = look_at(here, "file");
  write_file("other", "abc");
  ASSERT_EQ(rename("other", "file"), 0);
  EXPECT_FALSE(copy_to(here, "file", *status, "copy"));
  EXPECT_EQ(errno, EAGAIN);
  EXPECT_FALSE(std::filesystem::exists("copy"));
}

}  // namespace
}  // namespace morvane
