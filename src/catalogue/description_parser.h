// Reading a product's description into its record.
#ifndef MORVANE_CATALOGUE_DESCRIPTION_PARSER_H
#define MORVANE_CATALOGUE_DESCRIPTION_PARSER_H

#include <string_view>

#include "catalogue/product.h"

namespace morvane {

// Fills `record` from the description "DIRECTORY/IDENTIFIER.descr": initialises it first, so that
// afterwards its state is 0 and its `id` the identifier whatever happened. `descr_avail` is 0
// exactly where the file could not be opened. Faulty entries are reported on standard error and
// skipped.
void read_product(std::string_view directory, std::string_view identifier, product& record);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_DESCRIPTION_PARSER_H
