#include "platform/shell.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "support/child.h"

namespace morvane {
namespace {

using namespace std::string_literals;

// Runs `code` with standard error joined to standard output, and returns both as one text.
std::string output_in_order(const std::function<void()>& code) {
  return in_child("",
                  [&] {
                    dup2(STDOUT_FILENO, STDERR_FILENO);
                    std::fputs("before ", stdout);
                    code();
                    std::fputs("behind", stdout);
                    return "";
                  })
      .out;
}

// Returns what `output_of` returns for `command`, which names the scratch file as FILE, and whether
// that file is left.
outcome probe(std::string command) {
  return in_child("", [=]() mutable {
    if (const auto place = command.find("FILE"); place != std::string::npos) {
      command.replace(place, 4, scratch_file());
    }
    const std::string output = output_of(command).value_or("(nothing)");
    return output + (exists(scratch_file()) ? ", left" : ", removed");
  });
}

TEST(Command, TellsWhetherItsStatusIsZero) {
  EXPECT_TRUE(run_command("true"));
  EXPECT_FALSE(run_command("false"));
  EXPECT_FALSE(run_command("exit 2"));
  EXPECT_FALSE(run_command("kill -9 $$"));
  EXPECT_FALSE(run_command("/nonexistent/command 2> /dev/null"));
}

TEST(Command, RunsAfterEverythingPrintedSoFar) {
  EXPECT_EQ(output_in_order([] { run_command("printf 'command '"); }), "before command behind");
  EXPECT_EQ(output_in_order([] { first_line_of("printf 'command ' >&2", 9); }),
            "before command behind");
  EXPECT_EQ(output_in_order([] { output_of("printf 'command ' >&2"); }), "before command behind");
}

TEST(Command, ThatAnInterruptEndsEndsTheProgram) {
  EXPECT_EQ(signal_ending([] { run_command("kill -INT $$"); }), SIGINT);
  EXPECT_EQ(signal_ending([] { run_command("kill -QUIT $$"); }), SIGQUIT);
  EXPECT_EQ(signal_ending([] { run_command("exit 130"); }), SIGINT);
  EXPECT_EQ(signal_ending([] { run_command("exit 131"); }), SIGQUIT);
  EXPECT_EQ(signal_ending([] { first_line_of("kill -INT $$", 9); }), SIGINT);
  EXPECT_EQ(signal_ending([] { output_of("kill -INT $$"); }), SIGINT);
}

TEST(Command, ThatEndsOtherwiseDoesNot) {
  for (const char* command : {"kill -TERM $$", "kill -HUP $$", "kill -KILL $$", "exit 2", "exit 3",
                              "exit 129", "exit 132", "exit 255"}) {
    EXPECT_EQ(signal_ending([=] { run_command(command); }), 0) << command;
  }
}

TEST(Command, AnInterruptLeavesNoScratchFile) {
  const scratch_directory here;
  EXPECT_EQ(signal_ending([] {
              write_file("name", scratch_file());
              output_of("echo output > " + scratch_file() + "; kill -INT $$");
            }),
            SIGINT);
  EXPECT_FALSE(exists(read_file("name")));
}

TEST(FirstLine, IsWithoutItsLineEndAndCut) {
  const struct {
    std::string command;
    std::size_t longest;
    std::optional<std::string> line;
  } rows[] = {
      {"printf 'one\\ntwo\\n'", 9, "one"}, {"printf one", 9, "one"},
      {"printf 'abcd\\n'", 4, "abcd"},     {"printf 'abcde\\n'", 4, "abcd"},
      {"printf '\\nx\\n'", 9, ""},         {"printf 'ab\\0cd\\n'", 9, "ab"},
      {"true", 9, std::nullopt},           {"false", 9, std::nullopt},
      {"printf one; false", 9, "one"},
  };
  for (const auto& row : rows) EXPECT_EQ(first_line_of(row.command, row.longest), row.line);
}

TEST(Existence, FollowsLinksAndNeedsNoReadPermission) {
  const scratch_directory here;
  write_file("file", "");
  chmod("file", 0);
  mkdir("directory", 0700);
  ASSERT_EQ(symlink("file", "link"), 0);
  ASSERT_EQ(symlink("nowhere", "dangling"), 0);
  EXPECT_TRUE(exists("file"));
  EXPECT_TRUE(exists("directory"));
  EXPECT_TRUE(exists("link"));
  EXPECT_TRUE(exists(here.path()));
  EXPECT_FALSE(exists("dangling"));
  EXPECT_FALSE(exists("nowhere"));
  EXPECT_FALSE(exists(""));
}

TEST(ScratchFile, IsNamedAfterTheProcess) {
  const std::string name = "/tmp/" + std::to_string(getpid()) + ".tmp";
  EXPECT_EQ(scratch_file(), name);
  EXPECT_EQ(second_scratch_file(), name + "1");
}

TEST(ScratchFile, IsEmptyAndForItsOwnerAlone) {
  const outcome seen = in_child("", []() -> std::string {
    umask(0);
    if (!create_scratch_file(scratch_file()).is_open()) return "not created";
    struct stat status;
    if (lstat(scratch_file().c_str(), &status) != 0) return "not there";
    return std::to_string(status.st_mode == (S_IFREG | 0600)) + std::to_string(status.st_size);
  });
  EXPECT_EQ(seen.result, "10");
  EXPECT_EQ(seen.err, "");
}

TEST(ScratchFile, IsOpenToItsOwnerWhateverTheFileCreationMask) {
  const outcome seen = in_child("", [] {
    umask(0777);
    struct stat status {};
    const bool created = create_scratch_file(scratch_file()).is_open();
    stat(scratch_file().c_str(), &status);
    return created && status.st_mode == (S_IFREG | 0600) ? "open" : "closed";
  });
  EXPECT_EQ(seen.result, "open");
}

TEST(ScratchFile, ReplacesAForeignFile) {
  const outcome seen = in_child("", [] {
    write_file(scratch_file(), "foreign");
    chmod(scratch_file().c_str(), 0666);
    const bool created = create_scratch_file(scratch_file()).is_open();
    struct stat status;
    lstat(scratch_file().c_str(), &status);
    return created && status.st_mode == (S_IFREG | 0600) ? read_file(scratch_file()) : "kept";
  });
  EXPECT_EQ(seen.result, "");
}

TEST(ScratchFile, IsNeverWrittenThroughALink) {
  const scratch_directory here;
  write_file("precious", "precious");
  const std::string precious = here.path() + "/precious";
  const outcome seen = in_child("", [&]() -> std::string {
    if (symlink(precious.c_str(), scratch_file().c_str()) != 0) return "no link";
    return output_of("printf output > " + scratch_file()).value_or("(nothing)");
  });
  EXPECT_EQ(seen.result, "output");
  EXPECT_EQ(read_file("precious"), "precious");
}

TEST(ScratchFile, ThatCannotBeCreatedIsReportedAndFailsTheProbe) {
  const scratch_directory here;
  const outcome seen = in_child("", [] {
    mkdir(scratch_file().c_str(), 0700);
    const bool ran = output_of("touch ran").has_value() || exists("ran");
    rmdir(scratch_file().c_str());
    return scratch_file() + (ran ? " ran" : "");
  });
  EXPECT_EQ(seen.err, "morvane : error : cannot create temporary file '" + seen.result + "'\n");
  EXPECT_TRUE(seen.result.ends_with(".tmp"));
}

TEST(Probe, ReturnsTheOutputAndRemovesTheScratchFile) {
  EXPECT_EQ(probe("printf 'two\\nlines\\n' > FILE").result, "two\nlines\n, removed");
  EXPECT_EQ(probe("true").result, ", removed");
}

TEST(Probe, ReturnsTheOutputUpToTheFirstNul) {
  EXPECT_EQ(probe("printf 'ab\\0cd' > FILE").result, "ab, removed");
}

TEST(Probe, OfAFailingCommandReturnsNothingAndRemovesTheScratchFile) {
  EXPECT_EQ(probe("echo output > FILE; false").result, "(nothing), removed");
}

TEST(Probe, ReturnsNothingWhereTheScratchFileIsGone) {
  const outcome seen = probe("rm FILE");
  EXPECT_EQ(seen.result, "(nothing), removed");
  EXPECT_EQ(seen.written(), "");
}

TEST(Probe, ReturnsNothingWhereSomebodyHasReplacedTheScratchFile) {
  EXPECT_EQ(probe("f=FILE; rm $f; echo foreign > $f").result, "(nothing), removed");
  EXPECT_EQ(probe("f=FILE; mv $f $f.mine; ln -s $f.mine $f; 'rm' $f.mine").result,
            "(nothing), removed");
}

TEST(Probe, ReadsLongOutputWhole) {
  EXPECT_EQ(probe("yes | head -c 100001 > FILE").result.size(),
            100001 + std::string_view(", removed").size());
}

}  // namespace
}  // namespace morvane
