#include "platform/directory.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "platform/shell.h"
#include "support/child.h"
#include "support/records.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;
using names = std::vector<std::string>;

// Returns `result` and which scratch files are left behind it.
std::string with_left_files(std::string result) {
  if (exists(scratch_file())) result += ", first left";
  if (exists(second_scratch_file())) result += ", second left";
  return result;
}

std::string line_of(const std::optional<names>& found) {
  if (!found) return "cannot be listed";
  std::string line = std::to_string(found->size()) + ":";
  for (const std::string& name : *found) line += " " + name;
  return line;
}

outcome list(std::string_view directory, std::string_view pattern) {
  return in_child("", [=] { return with_left_files(line_of(get_files(directory, pattern))); });
}

outcome pwd_in(const fs::path& directory) {
  return in_child("", [&] {
    fs::current_path(directory);
    return with_left_files(get_pwd().value_or("(nothing)"));
  });
}

// As `list`, in a process that can grow by 100 MB only. `pattern` may name the scratch file as
// FILE.
outcome list_with_little_memory(std::string pattern) {
  return in_child("", [=]() mutable {
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const auto used = static_cast<rlim_t>(pages * sysconf(_SC_PAGESIZE));
    const rlimit limit = {used + 100'000'000, used + 100'000'000};
    if (pages == 0 || setrlimit(RLIMIT_AS, &limit) != 0) return std::string("no limit");
    if (const auto place = pattern.find("FILE"); place != std::string::npos) {
      pattern.replace(place, 4, scratch_file());
    }
    try {
      return with_left_files(line_of(get_files(".", pattern)));
    } catch (const std::bad_alloc&) {
      return with_left_files("memory is exhausted");
    }
  });
}

TEST(Listing, HasTheNamesInTheOrderOfLs) {
  const scratch_directory here;
  for (const char* name : {"d/c.tar", "d/a.tar", "d/b.tar", "d/a.descr", "d/.hidden.tar"}) {
    write_file(name, "");
  }
  const names tars = {"a.tar", "b.tar", "c.tar"};
  EXPECT_EQ(get_files("d", "*.tar"), tars);
  EXPECT_EQ(get_files(here.path() + "/d", "*.tar"), tars);
  EXPECT_EQ(get_files("d", "*.descr"), names{"a.descr"});
}

TEST(Listing, IsEmptyWithoutAMatchOrADirectory) {
  const scratch_directory here;
  write_file("d/a.tar", "");
  for (const char* directory : {"d", "nowhere", ""}) {
    const outcome seen = list(directory, "*.descr");
    EXPECT_EQ(seen.result, "0:") << directory;
    EXPECT_EQ(seen.written(), "");
  }
}

TEST(Listing, LeavesNoScratchFile) {
  const scratch_directory here;
  write_file("a.tar", "");
  write_file("b.tar", "");
  EXPECT_EQ(list(".", "*.tar").result, "2: a.tar b.tar");
}

TEST(Listing, QuotesTheDirectoryButNotThePattern) {
  const scratch_directory here;
  for (const char* directory : {"two words", "it's", "$HOME", "~root", "a;b"}) {
    write_file(fs::path(directory) / "a b.tar", "");
    EXPECT_EQ(get_files(directory, "*.tar"), names{"a b.tar"}) << directory;
  }
}

TEST(Listing, NamesWhatLiesThereAndIsNoDirectory) {
  const scratch_directory here;
  fs::create_directory("b.tar");
  EXPECT_EQ(get_files(".", "*.tar"), names());
  write_file("b.tar/inside", "");
  write_file("b.tar/inside.tar", "");
  EXPECT_EQ(get_files(".", "*.tar"), names());
  write_file("a.tar", "");
  EXPECT_EQ(get_files(".", "*.tar"), names{"a.tar"});
  fs::create_directory_symlink("b.tar", "c.tar");
  fs::create_symlink("nowhere", "d.tar");
  mkfifo("e.tar", 0600);
  EXPECT_EQ(get_files(".", "*.tar"), (names{"a.tar", "d.tar", "e.tar"}));
}

TEST(Listing, NamesNothingInParts) {
  const scratch_directory here;
  write_file("two\nlines.tar", "");
  EXPECT_EQ(get_files(".", "*.tar"), names());
  write_file("lines.tar", "");
  EXPECT_EQ(get_files(".", "*.tar"), (names{"lines.tar", "lines.tar"}));
}

TEST(Listing, OfAFileIsNotThatOfTheCurrentDirectory) {
  const scratch_directory here;
  write_file("a.tar", "");
  write_file("file", "");
  EXPECT_EQ(list("file", "*.tar").result, "0:");
}

TEST(Listing, OfADirectoryThatCannotBeEnteredIsNotThatOfTheCurrentDirectory) {
  const scratch_directory here;
  open_to_everybody(".");
  write_file("a.tar", "");
  write_file("closed/a.tar", "");
  fs::permissions("closed", fs::perms(0444));
  const outcome seen =
      in_child_as_ordinary_user("", [] { return line_of(get_files("closed", "*.tar")); });
  fs::permissions("closed", fs::perms(0755));
  EXPECT_EQ(seen.result, "0:");
}

std::string cannot_be_listed(const std::string& directory) {
  return "morvane : error : directory '" + directory + "' cannot be listed\n";
}

TEST(Listing, ThatFailsIsAnErrorWhereSomethingMatches) {
  const scratch_directory here;
  write_file("d/-z.tar", "");
  write_file("d/a.tar", "");
  const outcome failed = list("d", "*.tar");
  EXPECT_EQ(failed.result, "cannot be listed");
  EXPECT_EQ(failed.err, cannot_be_listed("d"));
  const outcome without_match = list("d", "*.descr");
  EXPECT_EQ(without_match.result, "0:");
  EXPECT_EQ(without_match.written(), "");
}

TEST(Listing, ThatFailsOverADirectoryAloneIsEmpty) {
  const scratch_directory here;
  fs::create_directory("-z.tar");
  write_file(".hidden.tar", "");
  const outcome seen = list(".", "*.tar");
  EXPECT_EQ(seen.result, "0:");
  EXPECT_EQ(seen.written(), "");
}

TEST(Listing, FailsWithoutItsScratchFile) {
  const scratch_directory here;
  write_file("a.tar", "");
  const outcome seen = in_child("", [] {
    fs::create_directory(scratch_file());
    const bool listed = get_files(".", "*.tar").has_value();
    const bool directory = get_pwd().has_value();
    fs::remove(scratch_file());
    return std::to_string(listed) + std::to_string(directory) + scratch_file();
  });
  const std::string report =
      "morvane : error : cannot create temporary file '" + seen.result.substr(2) + "'\n";
  EXPECT_EQ(seen.result.substr(0, 2), "00");
  EXPECT_EQ(seen.err, report + cannot_be_listed(".") + report);
}

TEST(Listing, ThatSomebodyElseWroteIsNotBelieved) {
  const scratch_directory here;
  write_file("a.tar", "");
  const outcome seen = in_child("", [&] {
    setenv("PATH", (here.path() + "/tools:" + getenv("PATH")).c_str(), 1);
    write_file("tools/ls", "#!/bin/sh\nf=" + scratch_file() + "\n'rm' -f $f\necho a.tar > $f\n");
    fs::permissions("tools/ls", fs::perms(0755));
    return with_left_files(line_of(get_files(".", "*.tar")));
  });
  EXPECT_EQ(seen.result, "cannot be listed");
  EXPECT_EQ(seen.err, cannot_be_listed("."));
}

TEST(Listing, ThatMemoryCannotHoldEndsTheRunAndIsLeft) {
#ifdef SANITIZERS
  GTEST_SKIP() << "the address sanitizer does not run in limited memory";
#endif
  const scratch_directory here;
  EXPECT_EQ(list_with_little_memory("> /dev/null; truncate -s 1G FILE #").result,
            "memory is exhausted, first left");
}

TEST(Listing, OfMoreNamesThanMemoryCanHoldEndsTheRun) {
#ifdef SANITIZERS
  GTEST_SKIP() << "the address sanitizer does not run in limited memory";
#endif
  const scratch_directory here;
  EXPECT_EQ(list_with_little_memory("> /dev/null; yes | head -c 20000000").result,
            "memory is exhausted");
}

TEST(CurrentDirectory, IsWholeWhereItsRestDoesNotExist) {
  const scratch_directory here;
  fs::create_directories("b/c");
  const outcome seen = pwd_in("b/c");
  EXPECT_EQ(seen.result, here.path() + "/b/c");
  EXPECT_EQ(seen.written(), "");
}

TEST(CurrentDirectory, IsWholeWhereItsRestIsAnotherDirectory) {
  if (fs::canonical("/var/tmp") != "/var/tmp" || !fs::exists("/tmp") ||
      fs::equivalent("/var/tmp", "/tmp")) {
    GTEST_SKIP() << "/var/tmp and /tmp are not two directories here";
  }
  const outcome seen = pwd_in("/var/tmp");
  EXPECT_EQ(seen.result, "/var/tmp, first left, second left");
  EXPECT_EQ(seen.written(), "");
}

TEST(CurrentDirectory, IsWholeWhereItsRestIsAFile) {
  if (fs::canonical("/var/tmp") != "/var/tmp" || !fs::exists("/tmp") ||
      fs::equivalent("/var/tmp", "/tmp")) {
    GTEST_SKIP() << "/var/tmp and /tmp are not two directories here";
  }
  // The shell cannot enter the file, stays, and compares the directory with itself.
  const std::string name = "morvane-listing-" + std::to_string(getpid());
  fs::create_directory("/var/tmp/" + name);
  std::ofstream("/tmp/" + name).put('x');
  const outcome seen = pwd_in("/var/tmp/" + name);
  fs::remove("/var/tmp/" + name);
  fs::remove("/tmp/" + name);
  EXPECT_EQ(seen.result, "/var/tmp/" + name + ", first left, second left");
}

TEST(CurrentDirectory, LosesItsFirstComponentWhereTheRestIsTheSameDirectory) {
  if (fs::canonical("/usr/bin") != "/usr/bin" || !fs::exists("/bin") ||
      !fs::equivalent("/usr/bin", "/bin")) {
    GTEST_SKIP() << "/usr/bin and /bin are not the same directory here";
  }
  const outcome seen = pwd_in("/usr/bin");
  EXPECT_EQ(seen.result, "/bin, first left, second left");
  EXPECT_EQ(seen.written(), "");
}

TEST(CurrentDirectory, LosesItsFirstComponentAtAnyDepth) {
  const scratch_directory here;
  fs::create_directories("b");  // where an unquoted path would lead
  fs::create_directories("b c/d");
  const outcome seen = in_child("", [&] {
    // A path with an empty first component names the same directory without it.
    fs::current_path("b c/d");
    setenv("PWD", ("/" + here.path() + "/b c/d").c_str(), 1);
    return get_pwd().value_or("(nothing)");
  });
  EXPECT_EQ(seen.result, here.path() + "/b c/d");
}

TEST(CurrentDirectory, IsWholeWhereOthersCouldTurnItsRest) {
  const scratch_directory here;
  fs::create_directories("b/c");
  chmod("b", 0777);
  const outcome seen = in_child("", [&] {
    fs::current_path("b/c");
    setenv("PWD", ("/" + here.path() + "/b/c").c_str(), 1);
    return get_pwd().value_or("(nothing)");
  });
  EXPECT_EQ(seen.result, "/" + here.path() + "/b/c");
}

TEST(CurrentDirectory, OfOneComponentIsWhole) {
  EXPECT_EQ(pwd_in("/").result, "/");
  const std::string directory = fs::canonical("/tmp").string();
  ASSERT_EQ(directory.find('/', 1), std::string::npos) << "/tmp leads elsewhere";
  EXPECT_EQ(pwd_in("/tmp").result, directory);
}

TEST(CurrentDirectory, ThatWasRemovedIsNeverMadeUp) {
  const scratch_directory here;
  const outcome seen = in_child("", [&] {
    fs::create_directory("gone");
    fs::current_path("gone");
    fs::remove(here.path() + "/gone");
    unsetenv("PWD");
    return with_left_files("[" + get_pwd().value_or("") + "]");
  });
  EXPECT_EQ(seen.result, "[]");
}

}  // namespace
}  // namespace morvane
