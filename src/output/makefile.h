// The installation makefile, which does all the work that the operator has configured.
#ifndef MORVANE_OUTPUT_MAKEFILE_H
#define MORVANE_OUTPUT_MAKEFILE_H

#include "depend/order.h"

namespace morvane {

// Writes the makefile for the products of `order` into the current directory. A file that cannot be
// opened or written in full ends the program, and so does a current directory that cannot be
// obtained; then no makefile stays, an earlier one neither.
void write_makefile(const installation_order& order);

}  // namespace morvane

#endif  // MORVANE_OUTPUT_MAKEFILE_H
