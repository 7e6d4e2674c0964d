#include "driver/start_up.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>

#include "console/message_format.h"
#include "console/message_table.h"
#include "console/printer.h"
#include "platform/identity.h"
#include "platform/pause.h"

namespace morvane {

namespace {

// Opens each standard descriptor that is closed on /dev/null: a file opened later would otherwise
// take its place, and dialogue or diagnostics would end up in it.
void open_missing_descriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) < 0) open("/dev/null", O_RDWR);
  }
}

void warn_ordinary_user() {
  print(fill("\n%s\n\n", {r[NOT_SUPERUSER]}));
  pause_for(3);
  print(fill("%s\n%s\n\n", {r[NOT_SUPERUSER_CONSEQUENCE_1], r[NOT_SUPERUSER_CONSEQUENCE_2]}));
  pause_for(5);
}

}  // namespace

void start_up() {
  open_missing_descriptors();
  // So that a file which cannot grow fails to be written, instead of ending the program half-way.
  signal(SIGXFSZ, SIG_IGN);
  // With it, a probe's "cd" could end up elsewhere and print where.
  unsetenv("CDPATH");
  // With it, "ls" could put names in quotes.
  unsetenv("QUOTING_STYLE");
  read_resource();
  if (!started_by_superuser()) warn_ordinary_user();
}

}  // namespace morvane
