// The order in which products are installed.
#ifndef MORVANE_DEPEND_ORDER_H
#define MORVANE_DEPEND_ORDER_H

#include <array>
#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "catalogue/product.h"

namespace morvane {

// The products to install, suppliers before those that need them; the entries behind the last
// product are null.
using installation_order = std::array<product*, TABLE_SIZE>;

// Takes a ring of dependencies: each product depends on the next one, and the last one on the
// first. A product that depends on itself stands there twice.
using ring_listener = std::function<void(std::span<product* const> ring)>;

// Reports a ring on standard error.
void diagnose_ring(std::span<product* const> ring);

// Fills `order` with the products of `table` that this run configures, each after the products it
// depends on. A ring of dependencies is handed to `listener` as it is met, and broken. Returns the
// number of products placed; where they are more than `order` holds, the surplus is left out.
std::size_t get_inst_order(product_table& table, installation_order& order,
                           const ring_listener& listener = diagnose_ring);

// Places everything that `record` depends on, and then `record` itself, in `order`, which holds the
// first of the `count` products placed so far; what it has no room for is only counted. `path` is
// the chain of products from the starting one down to the one before `record`.
void order_entry(product& record, std::vector<product*>& path, installation_order& order,
                 std::size_t& count, const ring_listener& listener = diagnose_ring);

}  // namespace morvane

#endif  // MORVANE_DEPEND_ORDER_H
