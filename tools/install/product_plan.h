// What the installation of one product will do to its directory.
#ifndef MORVANE_INSTALL_PRODUCT_PLAN_H
#define MORVANE_INSTALL_PRODUCT_PLAN_H

#include "install/plan.h"

namespace morvane {

// Returns what make will do for a product, and adds to `findings` what the operator should know of
// it. In the place of the product's directory there is a directory, or nothing.
product_plan plan_product(const product_facts& facts, std::vector<plan_finding>& findings);

// Returns the path of what lies at `path` below the product's directory.
std::string path_of(const product_facts& facts, const std::string& path);

}  // namespace morvane

#endif  // MORVANE_INSTALL_PRODUCT_PLAN_H
