#include "platform/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "support/child.h"

namespace morvane {

namespace {

namespace fs = std::filesystem;

TEST(Reading, OpensWhatIsThere) {
  const scratch_directory here;
  write_file("file", "text");
  EXPECT_TRUE(open_for_reading("file").is_open());
  EXPECT_FALSE(open_for_reading("nothing").is_open());
  EXPECT_EQ(errno, ENOENT);
}

TEST(Reading, OfAPipeWithoutAWriterEndsAtOnce) {
  const scratch_directory here;
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  const descriptor file = open_for_reading("pipe");
  EXPECT_TRUE(file.is_open());
  EXPECT_EQ(read_rest(file), "");
}

TEST(Reading, OpensNoDeviceButTheNullDevice) {
  const scratch_directory here;
  fs::create_symlink("/dev/null", "mask");
  EXPECT_EQ(read_rest(open_for_reading("/dev/null")), "");
  EXPECT_EQ(read_rest(open_for_reading("mask")), "");
  EXPECT_FALSE(open_for_reading("/dev/zero").is_open());
  EXPECT_EQ(errno, ENODEV);
  EXPECT_FALSE(open_for_reading("/dev/full").is_open());
}

TEST(Reading, TellsThatTheRestCannotBeRead) {
  const scratch_directory here;
  EXPECT_EQ(read_rest(open_for_reading(".")), std::nullopt);
  EXPECT_EQ(read_rest(descriptor()), std::nullopt);
}

TEST(Reading, EndsWhereThereIsMoreThanIsWanted) {
  const scratch_directory here;
  write_file("file", "text");
  EXPECT_EQ(read_rest(open_for_reading("file"), 4), "text");
  EXPECT_EQ(read_rest(open_for_reading("file"), 3), std::nullopt);
  EXPECT_EQ(errno, EFBIG);
}

TEST(Writing, OpensAFileAsItIsAndCreatesOneThatIsMissing) {
  const scratch_directory here;
  write_file("file", "text");
  bool created = true;
  EXPECT_TRUE(open_for_writing("file", created).is_open());
  EXPECT_FALSE(created);
  EXPECT_EQ(read_file("file"), "text");
  const mode_t mask = umask(027);
  EXPECT_TRUE(open_for_writing("new", created).is_open());
  umask(mask);
  EXPECT_TRUE(created);
  EXPECT_EQ(fs::status("new").permissions(), fs::perms(0640));
}

TEST(Writing, ReplacesAllThatTheFileHeld) {
  const scratch_directory here;
  write_file("file", "a longer text");
  bool created = false;
  EXPECT_TRUE(replace_content(open_for_writing("file", created), "short"));
  EXPECT_EQ(read_file("file"), "short");
}

TEST(Writing, TellsThatNotAllCouldBeWritten) {
  bool created = false;
  EXPECT_FALSE(replace_content(open_for_writing("/dev/full", created), "text"));
  EXPECT_TRUE(replace_content(open_for_writing("/dev/null", created), "text"));
  EXPECT_FALSE(replace_content(open_for_reading("/dev/null"), "text"));
}

TEST(Writing, ToAPipeWithoutAReaderFails) {
  const scratch_directory here;
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  bool created = false;
  EXPECT_FALSE(open_for_writing("pipe", created).is_open());
}

TEST(FileAtAPath, IsTheOpenOneAsLongAsNobodyReplacesIt) {
  const scratch_directory here;
  write_file("file", "text");
  const descriptor file = open_for_reading("file");
  EXPECT_TRUE(is_file_at("file", file));
  fs::rename("file", "moved");
  EXPECT_FALSE(is_file_at("file", file));
  fs::create_symlink("moved", "file");
  EXPECT_FALSE(is_file_at("file", file));
  fs::remove("file");
  write_file("file", "text");
  EXPECT_FALSE(is_file_at("file", file));
}

TEST(SameFile, IsTheSameByEveryName) {
  const scratch_directory here;
  fs::create_directory("a");
  fs::create_directory("b");
  fs::create_directory_symlink("a", "link");
  EXPECT_TRUE(is_same_file("a", "link"));
  EXPECT_TRUE(is_same_file("a", "./b/../a"));
  EXPECT_FALSE(is_same_file("a", "b"));
  EXPECT_FALSE(is_same_file("a", "nothing"));
}

}  // namespace

}  // namespace morvane
