#include "console/leave_without.h"

#include "console/leave.h"
#include "console/printer.h"
#include "messages/table.h"
#include "platform/diagnostic.h"
#include "text/format.h"

namespace morvane {

void leave_without_file(std::string_view name) {
  print(fill("\n\n%s%s%s\n\n", {r[FILE_NOT_OPENED], name, r[FILE_NOT_OPENED_END]}));
  quit();
}

void leave_without_current_directory() {
  diagnose_error("failed to get current directory.");
  quit();
}

}  // namespace morvane
