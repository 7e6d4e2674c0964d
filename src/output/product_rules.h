// The rules of one product in the installation makefile.
#ifndef MORVANE_OUTPUT_PRODUCT_RULES_H
#define MORVANE_OUTPUT_PRODUCT_RULES_H

#include <array>
#include <string>
#include <string_view>

#include "catalogue/product.h"

namespace morvane {

// The configurator's own files that are copied into every new product, so that it can be configured
// again from its own directory.
inline constexpr std::array<std::string_view, 4> INST_FILES = {"morvane.rsc", "morvane.SunOS4",
                                                               "morvane.SunOS5", "Makefile"};

// Returns the rules that install `record`, a configured product, or, where it is installed,
// configure it again. `host_system` is the system that they will run on. Files of the configurator
// or the product that are missing in the current directory are left out and reported on standard
// error.
std::string product_rules(const product& record, std::string_view host_system);

}  // namespace morvane

#endif  // MORVANE_OUTPUT_PRODUCT_RULES_H
