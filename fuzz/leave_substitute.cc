#include "leave_substitute.h"

#include "console/leave.h"
#include "console/message_table.h"
#include "console/printer.h"

namespace morvane {

unsigned char return_code = 1;

void quit() {
  print(r[FAREWELL]);
  throw farewell();
}

}  // namespace morvane
