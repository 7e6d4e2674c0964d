#include "console/leave.h"

#include <cstdio>
#include <cstdlib>

#include "console/message_table.h"
#include "console/printer.h"
#include "platform/diagnostic.h"
#include "version/version.h"

namespace morvane {

unsigned char return_code = 1;

void quit() {
  print(rscok ? r[FAREWELL] : "\n\n*** BYE! ***\n\n\n");
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    diagnose(PROGRAM_NAME);
    diagnose(" : warning : standard output could not be written in full\n");
  }
  std::exit(return_code);
}

}  // namespace morvane
