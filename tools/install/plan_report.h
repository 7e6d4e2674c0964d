// The plan of an installation, for people and for programs.
#ifndef MORVANE_INSTALL_PLAN_REPORT_H
#define MORVANE_INSTALL_PLAN_REPORT_H

#include <string>

#include "install/plan.h"

namespace morvane {

// Returns the plan in a few lines for each product. `keeps` tells whether replaced files are kept.
std::string plan_text(const install_plan& plan, bool keeps);

// Returns everything that is known of it.
std::string plan_json(const install_plan& plan);

}  // namespace morvane

#endif  // MORVANE_INSTALL_PLAN_REPORT_H
