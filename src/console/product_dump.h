// The diagnostic dump of a product record.
#ifndef MORVANE_CONSOLE_PRODUCT_DUMP_H
#define MORVANE_CONSOLE_PRODUCT_DUMP_H

#include "catalogue/product.h"

namespace morvane {

// Prints the whole of `record` to standard output, for whoever debugs. Absent texts show as empty.
void print_product(const product& record);

}  // namespace morvane

#endif  // MORVANE_CONSOLE_PRODUCT_DUMP_H
