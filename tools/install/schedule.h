// Which products of an installation must wait for which.
#ifndef MORVANE_INSTALL_SCHEDULE_H
#define MORVANE_INSTALL_SCHEDULE_H

#include <cstddef>
#include <string>
#include <vector>

#include "install/plan.h"

namespace morvane {

// Tells whether the directory `path` is `other`, or lies below it, wherever links lead.
bool is_below(const std::string& path, const std::string& other);

// Returns for each product the earlier ones that must be installed before it begins: those that it
// needs or that need it, and those whose directory is the same, or one inside the other. All others
// can be installed at the same time, and what comes out is the same.
std::vector<std::vector<std::size_t>> waits_of(const install_plan& plan);

}  // namespace morvane

#endif  // MORVANE_INSTALL_SCHEDULE_H
