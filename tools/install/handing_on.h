// Which files an installation hands on from one owner or group to another.
#ifndef MORVANE_INSTALL_HANDING_ON_H
#define MORVANE_INSTALL_HANDING_ON_H

#include <string>
#include <vector>

#include "install/plan.h"

namespace morvane {

// Returns the paths below the directory of a product, sorted, that its installation hands on though
// they are not its own. What it extracts and copies is planned already.
std::vector<std::string> files_given_away(const product_plan& plan);

}  // namespace morvane

#endif  // MORVANE_INSTALL_HANDING_ON_H
