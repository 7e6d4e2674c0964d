// Receipts for what was installed by make alone.
#ifndef MORVANE_VERIFY_SAVE_H
#define MORVANE_VERIFY_SAVE_H

#include <string>
#include <vector>

#include "command/command_line.h"
#include "command/exit_status.h"

namespace morvane {

// Keeps a receipt of each product that install.mk in the current directory installs and that has
// none yet; only of those that `ids` names, if it names any. Says on standard error what
// becomes of each.
exit_status save_receipts(const command& described, const std::string& registry,
                          const std::vector<std::string>& ids);

}  // namespace morvane

#endif  // MORVANE_VERIFY_SAVE_H
