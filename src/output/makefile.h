// The installation makefile, which does all the work that the operator has configured.
#ifndef MORVANE_OUTPUT_MAKEFILE_H
#define MORVANE_OUTPUT_MAKEFILE_H

#include <array>
#include <string_view>

#include "depend/order.h"

namespace morvane {

// The configurator's own files that are copied into every new product, so that it can be configured
// again from its own directory.
inline constexpr std::array<std::string_view, 4> INST_FILES = {"morvane.rsc", "morvane.SunOS4",
                                                               "morvane.SunOS5", "Makefile"};

// Writes the makefile for the products of `order` into the current directory. A file that cannot be
// opened or written in full ends the program; no half of it stays.
void write_makefile(const installation_order& order);

}  // namespace morvane

#endif  // MORVANE_OUTPUT_MAKEFILE_H
