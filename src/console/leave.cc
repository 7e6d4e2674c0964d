#include "console/leave.h"

#include <cstdio>
#include <cstdlib>

#include "console/printer.h"
#include "messages/table.h"
#include "platform/diagnostic.h"

namespace morvane {

unsigned char return_code = 1;

void quit() {
  print(rscok ? r[FAREWELL] : "\n\n*** BYE! ***\n\n\n");
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    diagnose_warning("standard output could not be written in full");
  }
  // The status stays: with 0 the files are written, though perhaps nobody could read so.
  std::exit(return_code);
}

}  // namespace morvane
