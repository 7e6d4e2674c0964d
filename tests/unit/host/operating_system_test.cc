#include "host/operating_system.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstring>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace {

// What the system says of itself in place of the truth; null tells the truth.
const utsname* pretended = nullptr;
bool system_is_silent = false;

}  // namespace

// Stands in for the library's function in this program, so that hosts can be pretended.
extern "C" int uname(utsname* answer) noexcept {
  if (system_is_silent) return -1;
  if (pretended == nullptr) return static_cast<int>(syscall(SYS_uname, answer));
  *answer = *pretended;
  return 0;
}

namespace morvane {
namespace {

utsname host_of(const char* system, const char* release, const char* machine) {
  utsname host{};
  std::strcpy(host.sysname, system);
  std::strcpy(host.release, release);
  std::strcpy(host.machine, machine);
  return host;
}

// Systems "SunOS" and "Other", machines "sun4".
void use_host_messages() {
  use_test_messages();
  set_message(SYSTEM_1, "SunOS");
  set_message(SYSTEM_2, "Other");
  set_message(MACHINE_PREFIX, "sun4");
}

outcome check(const utsname& host) {
  return in_child_in_order("", [&] {
    pretended = &host;
    return check_host_system() ? "fits" : "does not fit";
  });
}

// Runs whichOS on a host whose uname and sed print `line`.
outcome which_os_of(std::string_view line) {
  const scratch_directory directory;
  return in_child("", [&] {
    write_program("bin/uname", "exit 0\n");
    write_program("bin/sed", "printf '" + std::string(line) + "'\n");
    put_first_on_path(directory.path() + "/bin");
    return whichOS();
  });
}

TEST(SystemName, IsTheSystemAndItsMajorReleaseJoined) {
  const scratch_directory directory;
  const auto name_on = [](const char* host) {
    return in_child("", [=] {
      pretend_host(host);
      return whichOS();
    });
  };
  EXPECT_EQ(name_on("SunOS 5.5.1").result, "SunOS5");
  EXPECT_EQ(name_on("SunOS 4.1.3").result, "SunOS4");
  EXPECT_EQ(name_on("Linux 12").result, "Linux12");
  EXPECT_EQ(name_on("A B C").result, "AB C");
  EXPECT_EQ(name_on("SunOS 5.5.1").err, "");
}

TEST(SystemName, IsFoundOnThisHost) {
  utsname host;
  ASSERT_EQ(uname(&host), 0);
  const std::string line = std::string(host.sysname) + host.release;
  EXPECT_EQ(in_child("", whichOS).result, line.substr(0, line.find('.')));
}

TEST(SystemName, IsCutAfterSeventeenCharacters) {
  EXPECT_EQ(which_os_of("1234567890abcdefg\\n").result, "1234567890abcdefg");
  EXPECT_EQ(which_os_of("1234567890abcdefgh\\n").result, "1234567890abcdefg");
  EXPECT_EQ(which_os_of("1234567890abcdefg").result, "1234567890abcdefg");
}

TEST(SystemName, IsTheFirstLineOnly) {
  EXPECT_EQ(which_os_of("one\\ntwo\\n").result, "one");
}

TEST(SystemName, IsEmptyAndWarnedOfWhereTheHostDoesNotTell) {
  for (const char* line : {"", "\\n", "\\nSunOS5\\n"}) {
    const outcome seen = which_os_of(line);
    EXPECT_TRUE(seen.returned);
    EXPECT_EQ(seen.result, "");
    EXPECT_EQ(seen.out, "");
    EXPECT_EQ(seen.err, "morvane : warning : failed to get current operating system.\n");
  }
}

TEST(ReleaseNumber, IsMadeOfTheFirstThirdAndFifthCharacter) {
  const struct {
    const char* release;
    int number;
  } cases[] = {
      {"5.5.1", 551000},  {"4.1.3", 413000},   {"5.5", 55000},  {"5", 5000},       {"", 0},
      {"0.0.0", 0},       {"0.1", 1000},       {"x.5.1", 0},    {"5x5.1", 551000}, {"10.4", 1000},
      {"6.18.44", 61000}, {"5.5.1-9", 551000}, {"5.x.1", 5000},
  };
  for (const auto& [release, number] : cases) {
    EXPECT_EQ(release_number(release), number) << release;
  }
}

TEST(HostCheck, TellsEverythingThatDoesNotFit) {
  use_host_messages();
  const struct {
    utsname host;
    const char* printed;
  } cases[] = {
      {host_of("SunOS", "5.5.1", "sun4m"), ""},
      {host_of("SunOS", "4.1.0", "sun4"), ""},
      {host_of("SunOS", "0.1", "sun4"), ""},
      {host_of("SunOS", "0.0.0", "sun4"), "<118 0.0.0>\n"},
      {host_of("SunOS", "x5.5.1", "sun4"), "<118 x5.5.1>\n"},
      {host_of("SunOS", "", "sun4"), "<118 >\n"},
      {host_of("Other", "1.1.1", "sun4"), ""},
      {host_of("Other", "r1", "sun4"), "<119 r1>\n"},
      {host_of("Neither", "5.5.1", "sun4"), "<117 Neither SunOS Other>\n"},
      {host_of("SunO", "5.5.1", "sun4"), "<117 SunO SunOS Other>\n"},
      {host_of("SunOS", "5.5.1", "sun3x"), "<121 sun3x>\n"},
      {host_of("SunOS", "5.5.1", "sun"), "<121 sun>\n"},
      {host_of("Neither", "x", "sun3x"), "<117 Neither SunOS Other>\n<121 sun3x>\n"},
  };
  for (const auto& [host, printed] : cases) {
    const outcome seen = check(host);
    EXPECT_EQ(seen.out, printed);
    EXPECT_EQ(seen.result, *printed == '\0' ? "fits" : "does not fit") << printed;
  }
}

TEST(HostCheck, ComparesFourCharactersOfTheMachine) {
  use_host_messages();
  set_message(MACHINE_PREFIX, "sun4mp");
  EXPECT_EQ(check(host_of("SunOS", "5.5.1", "sun4u")).result, "fits");
  set_message(MACHINE_PREFIX, "sun");
  EXPECT_EQ(check(host_of("SunOS", "5.5.1", "sun")).result, "fits");
  EXPECT_EQ(check(host_of("SunOS", "5.5.1", "sun4")).out, "<121 sun4>\n");
}

TEST(HostCheck, ASystemThatIsBothIsTheFirst) {
  use_host_messages();
  set_message(SYSTEM_2, "SunOS");
  EXPECT_EQ(check(host_of("SunOS", "x", "sun4")).out, "<118 x>\n");
}

TEST(HostCheck, TheSiteCommandIsRunInAnyCase) {
  use_host_messages();
  set_message(SITE_HOST_COMMAND, "echo site; false");
  const outcome seen = check(host_of("Neither", "x", "vax"));
  EXPECT_EQ(seen.out, "<117 Neither SunOS Other>\n<121 vax>\nsite\n<123>\n");
  EXPECT_EQ(seen.result, "does not fit");
}

TEST(HostCheck, AFailingSiteCommandAloneIsEnough) {
  use_host_messages();
  set_message(SITE_HOST_COMMAND, "exit 3");
  set_message(SITE_HOST_FAILED.number, "100%% failed%s\n");
  const outcome seen = check(host_of("SunOS", "5.5.1", "sun4"));
  EXPECT_EQ(seen.out, "100% failed\n");
  EXPECT_EQ(seen.result, "does not fit");
}

TEST(HostCheck, LearnsTheTruthOfThisHost) {
  use_host_messages();
  utsname host;
  ASSERT_EQ(uname(&host), 0);
  set_message(SYSTEM_1, host.sysname);
  set_message(MACHINE_PREFIX, host.machine);
  const outcome seen = in_child("", [] {
    return std::string(check_host_system() ? "fits " : "does not fit ") + name.release;
  });
  EXPECT_EQ(seen.result, std::string("fits ") + host.release);
  EXPECT_EQ(seen.written(), "");
}

TEST(HostCheck, AHostThatCannotBeIdentifiedEndsTheProgram) {
  use_host_messages();
  const outcome seen = in_child("", [] {
    system_is_silent = true;
    return check_host_system() ? "fits" : "does not fit";
  });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
  EXPECT_EQ(seen.err, "<114> morvane\n");
  EXPECT_EQ(seen.out, "<299>");
}

}  // namespace
}  // namespace morvane
