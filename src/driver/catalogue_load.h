// Filling the product table from the distribution.
#ifndef MORVANE_DRIVER_CATALOGUE_LOAD_H
#define MORVANE_DRIVER_CATALOGUE_LOAD_H

#include "catalogue/product.h"

namespace morvane {

// Fills `table`, from slot 0 on, with the products whose archives lie in the current directory
// (AVAILABLE) and then with those installed here (INSTALLED). A product that is both has two slots.
// A table that is too small is reported on standard error; what fits stays. Files that cannot be
// listed end the program.
void load_catalogue(product_table& table);

}  // namespace morvane

#endif  // MORVANE_DRIVER_CATALOGUE_LOAD_H
