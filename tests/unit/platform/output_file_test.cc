#include "platform/output_file.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "platform/signals.h"
#include "support/child.h"

namespace morvane {
namespace {

bool there() {
  return std::filesystem::exists("file");
}

TEST(OutputFile, HoldsWhatItHeldUntilItIsWritten) {
  const scratch_directory here;
  write_file("file", "a longer text of an earlier run");
  output_file file("file", earlier_file::STAYS);
  EXPECT_EQ(read_file("file"), "a longer text of an earlier run");
  EXPECT_TRUE(file.write("text"));
  EXPECT_EQ(read_file("file"), "text");
}

TEST(OutputFile, ThatIsNeverWrittenLeavesAnEarlierOneOrNone) {
  const scratch_directory here;
  { const output_file file("file", earlier_file::STAYS); }
  EXPECT_FALSE(there());
  write_file("file", "earlier");
  { const output_file file("file", earlier_file::STAYS); }
  EXPECT_EQ(read_file("file"), "earlier");
  { const output_file file("file", earlier_file::GOES); }
  EXPECT_FALSE(there());
}

TEST(OutputFile, ThatCannotBeWrittenInFullGoesOrStaysAsItIs) {
  const scratch_directory here;
  for (const earlier_file earlier : {earlier_file::STAYS, earlier_file::GOES}) {
    std::filesystem::create_symlink("/dev/full", "file");
    {
      output_file file("file", earlier);
      EXPECT_FALSE(file.write("text"));
    }
    EXPECT_EQ(std::filesystem::is_symlink("file"), earlier == earlier_file::STAYS);
    std::filesystem::remove("file");
  }
}

TEST(OutputFile, ThatCannotBeOpenedIsLeftAlone) {
  const scratch_directory here;
  std::filesystem::create_symlink("/nonexistent/file", "file");
  {
    const output_file file("file", earlier_file::GOES);
    EXPECT_FALSE(file.is_open());
  }
  EXPECT_TRUE(std::filesystem::is_symlink("file"));
}

// Opens the output file in a child, which a signal ends before it is written.
void interrupt() {
  const pid_t child = fork();
  if (child == 0) {
    handle_signals();
    const output_file file("file", earlier_file::STAYS);
    raise(SIGTERM);
    std::_Exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}

TEST(OutputFile, ASignalLeavesAnEarlierOneOrNone) {
  const scratch_directory here;
  interrupt();
  EXPECT_FALSE(there());
  write_file("file", "earlier");
  interrupt();
  EXPECT_EQ(read_file("file"), "earlier");
}

}  // namespace
}  // namespace morvane
