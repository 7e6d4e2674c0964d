// Settling what each target of a product needs.
#ifndef MORVANE_DEPEND_RESOLUTION_H
#define MORVANE_DEPEND_RESOLUTION_H

#include <cstddef>

#include "catalogue/product.h"

namespace morvane {

// Decides for each target of `record`, a product selected for installation or reconfiguration,
// whether it is to be installed, and settles a supplier for each of its category dependencies; then
// settles the needed patches. Installed products that are discovered on the way take free slots of
// `table`. A product whose target needs an owner or group that the operator may not give is given
// up: it goes back to AVAILABLE and nothing further is settled.
void get_product_depend(product& record, product_table& table);

// Takes back what `get_product_depend` did for `record`: frees the slots of `table` from
// `first_free` on, and makes its targets undecided and its dependencies unsettled.
void undo_get_product_depend(product& record, product_table& table, std::size_t first_free);

}  // namespace morvane

#endif  // MORVANE_DEPEND_RESOLUTION_H
