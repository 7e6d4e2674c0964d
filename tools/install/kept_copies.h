// Copies of what an installation will replace.
#ifndef MORVANE_INSTALL_KEPT_COPIES_H
#define MORVANE_INSTALL_KEPT_COPIES_H

#include <string>

#include "install/plan.h"

namespace morvane {

// Copies what the installation of `product` replaces to its own absolute path below `directory`,
// with mode, owner, group and time. Returns what went wrong; empty where all was copied.
std::string keep_replaced(const product_plan& product, const std::string& directory);

}  // namespace morvane

#endif  // MORVANE_INSTALL_KEPT_COPIES_H
