// The order in which products are installed.
#ifndef MORVANE_DEPEND_ORDER_H
#define MORVANE_DEPEND_ORDER_H

#include <array>
#include <vector>

#include "catalogue/product.h"

namespace morvane {

// The products to install, suppliers before those that need them; the entries behind the last
// product are null.
using installation_order = std::array<product*, TABLE_SIZE>;

// Fills `order` with the products of `table` that this run configures, each after the products it
// depends on. A ring of dependencies is reported on standard error and broken. Returns the number
// of products placed; where they are more than `order` holds, the surplus is left out.
int get_inst_order(product_table& table, installation_order& order);

// Places everything that `record` depends on, and then `record` itself, in `order`, which holds the
// first of the `count` products placed so far; what it has no room for is only counted. `path` is
// the chain of products from the starting one down to the one before `record`.
void order_entry(product& record, std::vector<product*>& path, installation_order& order,
                 int& count);

}  // namespace morvane

#endif  // MORVANE_DEPEND_ORDER_H
