#include "driver/start_up.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "console/leave.h"
#include "console/printer.h"
#include "messages/table.h"
#include "platform/diagnostic.h"
#include "platform/directory_lock.h"
#include "platform/identity.h"
#include "platform/pause.h"
#include "platform/signals.h"
#include "text/format.h"

namespace morvane {

namespace {

// Another program may have left the terminal so that reading from it does not wait.
void wait_for_answers() {
  const int flags = fcntl(STDIN_FILENO, F_GETFL);
  if ((flags & O_NONBLOCK) != 0) fcntl(STDIN_FILENO, F_SETFL, flags & ~O_NONBLOCK);
}

// Returns the variables that hold functions which a shell would define: its commands could be
// others.
std::vector<std::string> exported_functions() {
  std::vector<std::string> names;
  for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
    const std::string_view setting(*variable);
    if (setting.starts_with("BASH_FUNC_")) names.emplace_back(setting.substr(0, setting.find('=')));
  }
  return names;
}

// Undoes what the program may have been started with and its shell commands cannot work with.
void reset_what_commands_inherit() {
  signal(SIGCHLD, SIG_DFL);   // ignored, it has every command fail
  unsetenv("CDPATH");         // a probe's "cd" could end up elsewhere and print where
  unsetenv("QUOTING_STYLE");  // "ls" could put names in quotes
  for (const char* name : {"SHELLOPTS", "BASHOPTS", "GLOBIGNORE"}) {
    unsetenv(name);  // a shell could leave patterns as they stand, or run nothing
  }
  for (const char* name : {"ENV", "BASH_ENV"}) unsetenv(name);  // a shell could read a file first
  for (const std::string& name : exported_functions()) unsetenv(name.c_str());
}

// Keeps other runs out of the current directory until this one ends: they would overwrite each
// other's files.
void keep_others_out() {
  if (lock_current_directory()) return;
  diagnose_error(OTHER_CONFIGURATOR);
  quit();
}

void load_messages() {
  if (read_resource()) return;
  print(fill("\nCannot find resource file <<%s>>\n", {RESOURCE_FILE}));
  quit();
}

void warn_ordinary_user() {
  print(fill("\n%s\n\n", {r[NOT_SUPERUSER]}));
  pause_for(3);
  print(fill("%s\n%s\n\n", {r[NOT_SUPERUSER_CONSEQUENCE_1], r[NOT_SUPERUSER_CONSEQUENCE_2]}));
  pause_for(5);
}

}  // namespace

// From the lowest on, since the lowest that is closed is what an open takes.
void open_missing_descriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0) std::_Exit(return_code);
  }
}

void start_up() {
  open_missing_descriptors();
  handle_signals();
  wait_for_answers();
  // So that a file which cannot grow fails to be written, instead of ending the program half-way.
  signal(SIGXFSZ, SIG_IGN);
  reset_what_commands_inherit();
  load_messages();
  // Behind the messages: whoever is kept out leaves with their farewell.
  keep_others_out();
  if (!started_by_superuser()) warn_ordinary_user();
}

}  // namespace morvane
