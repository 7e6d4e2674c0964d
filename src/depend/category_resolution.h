// Settling one category dependency: which product supplies what a target needs.
#ifndef MORVANE_DEPEND_CATEGORY_RESOLUTION_H
#define MORVANE_DEPEND_CATEGORY_RESOLUTION_H

#include "catalogue/product.h"

namespace morvane {

// Settles `category`, a dependency of `target` of `record`, by the operator's choice: a product of
// `table`, one described in a directory that the operator names, or one that the operator says is
// there. Asks until one is accepted. Products read from the directory of an accepted one stay in
// the table.
void resolve_category_dep(const product& record, const target_dep& target, category_dep& category,
                          product_table& table);

}  // namespace morvane

#endif  // MORVANE_DEPEND_CATEGORY_RESOLUTION_H
