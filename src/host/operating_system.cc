#include "host/operating_system.h"

#include "console/leave.h"
#include "console/printer.h"
#include "messages/table.h"
#include "platform/diagnostic.h"
#include "platform/shell.h"
#include "text/format.h"
#include "text/number.h"
#include "version/version.h"

namespace morvane {

utsname name;

namespace {

constexpr const char* SYSTEM_COMMAND = "uname -sr | sed 's/\\..*$//;s/ //'";
constexpr std::size_t LONGEST_SYSTEM_NAME = 17;

// The digits of 4.1.1 and 1.1.1; see `release_number` for what a comparison with them comes to.
constexpr int OLDEST_RELEASE_1 = 411;
constexpr int OLDEST_RELEASE_2 = 111;

constexpr std::size_t MACHINE_PREFIX_LENGTH = 4;

bool release_suffices(int oldest, message_format<1> too_old) {
  if (release_number(name.release) >= oldest) return true;
  print(fill(too_old, name.release));
  return false;
}

bool check_system() {
  const std::string_view system = name.sysname;
  if (system == r[SYSTEM_1]) return release_suffices(OLDEST_RELEASE_1, SYSTEM_1_RELEASE_TOO_OLD);
  if (system == r[SYSTEM_2]) return release_suffices(OLDEST_RELEASE_2, SYSTEM_2_RELEASE_TOO_OLD);
  print(fill(SYSTEM_NOT_SUPPORTED, system, r[SYSTEM_1], r[SYSTEM_2]));
  return false;
}

bool check_machine() {
  const std::string_view machine = name.machine;
  const std::string_view prefix = r[MACHINE_PREFIX];
  if (machine.substr(0, MACHINE_PREFIX_LENGTH) == prefix.substr(0, MACHINE_PREFIX_LENGTH)) {
    return true;
  }
  print(fill(MACHINE_NOT_SUPPORTED, machine));
  return false;
}

bool check_site() {
  if (run_command(std::string(r[SITE_HOST_COMMAND]))) return true;
  print(fill(SITE_HOST_FAILED));
  return false;
}

}  // namespace

std::string whichOS() {
  const auto system = first_line_of(SYSTEM_COMMAND, LONGEST_SYSTEM_NAME);
  if (system && !system->empty()) return *system;
  diagnose_warning("failed to get current operating system.");
  return "";
}

int release_number(std::string_view release) {
  std::string digits;
  for (const std::size_t position : {0UL, 2UL, 4UL}) {
    if (position >= release.size()) break;
    digits += release[position];
  }
  // Meant for releases of one or two digits, but applied to all: in effect a release is too old
  // only where its digits read as 0. Hosts in use rely on passing.
  return number_or_zero(digits) * 100 * 10;
}

bool check_host_system() {
  if (uname(&name) < 0) {
    diagnose(fill("%s %s\n", {r[HOST_NOT_IDENTIFIED], PROGRAM_NAME}));
    quit();
  }
  // None is left out where another has failed: each tells what does not fit.
  const bool system_fits = check_system();
  const bool machine_fits = check_machine();
  const bool site_fits = check_site();
  return system_fits && machine_fits && site_fits;
}

}  // namespace morvane
