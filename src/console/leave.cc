#include "console/leave.h"

#include <cstdlib>

#include "console/message_table.h"
#include "console/printer.h"

namespace morvane {

unsigned char return_code = 1;

void quit() {
  print(rscok ? r[FAREWELL] : "\n\n*** BYE! ***\n\n\n");
  std::exit(return_code);
}

}  // namespace morvane
