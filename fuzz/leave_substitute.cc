#include "leave_substitute.h"

#include "console/leave.h"
#include "console/printer.h"
#include "messages/table.h"

namespace morvane {

unsigned char return_code = 1;

void quit() {
  print(r[FAREWELL]);
  throw farewell();
}

}  // namespace morvane
