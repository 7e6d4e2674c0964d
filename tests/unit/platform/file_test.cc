#include "platform/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "support/records.h"

namespace morvane {

namespace {

namespace fs = std::filesystem;

// Returns whether `descriptor` is one, and closes it.
bool opened(int descriptor) {
  if (descriptor >= 0) close(descriptor);
  return descriptor >= 0;
}

TEST(Reading, OpensWhatIsThere) {
  const scratch_directory here;
  std::ofstream("file") << "text";
  EXPECT_TRUE(opened(open_for_reading("file")));
  EXPECT_FALSE(opened(open_for_reading("nothing")));
}

TEST(Reading, OfAPipeWithoutAWriterEndsAtOnce) {
  const scratch_directory here;
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  const int descriptor = open_for_reading("pipe");
  char byte;
  EXPECT_EQ(read(descriptor, &byte, 1), 0);
  EXPECT_TRUE(opened(descriptor));
}

TEST(Reading, DoesNotOpenDevices) {
  EXPECT_FALSE(opened(open_for_reading("/dev/null")));
  EXPECT_FALSE(opened(open_for_reading("/dev/zero")));
}

TEST(Writing, CreatesAndEmpties) {
  const scratch_directory here;
  std::ofstream("file") << "text";
  EXPECT_TRUE(opened(open_for_writing("file")));
  EXPECT_EQ(fs::file_size("file"), 0U);
  const mode_t mask = umask(027);
  EXPECT_TRUE(opened(open_for_writing("new")));
  umask(mask);
  EXPECT_EQ(fs::status("new").permissions(), fs::perms(0640));
}

TEST(Writing, ToAPipeWithoutAReaderFails) {
  const scratch_directory here;
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  EXPECT_FALSE(opened(open_for_writing("pipe")));
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
