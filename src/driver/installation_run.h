// The installation run: the table of contents of the whole program.
#ifndef MORVANE_DRIVER_INSTALLATION_RUN_H
#define MORVANE_DRIVER_INSTALLATION_RUN_H

#include "catalogue/product.h"

namespace morvane {

// Takes the operator through the whole configuration of the products of `table`, from the header to
// the last question, and ends the program: with status 0 only after a last yes.
[[noreturn]] void run_installation(product_table& table);

}  // namespace morvane

#endif  // MORVANE_DRIVER_INSTALLATION_RUN_H
