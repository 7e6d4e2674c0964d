// Reading a product's description into its record.
#ifndef MORVANE_CATALOGUE_DESCRIPTION_PARSER_H
#define MORVANE_CATALOGUE_DESCRIPTION_PARSER_H

#include <string_view>

#include "catalogue/description_fault.h"
#include "catalogue/product.h"

namespace morvane {

enum class read_outcome {
  DONE,        // to the end, or to an error behind which nothing is read
  MISSING,     // there is no description
  IMPOSSIBLE,  // there is one, and it cannot be opened, or it is a directory
};

// Fills `record` from the description "DIRECTORY/IDENTIFIER.descr": initialises it first, so that
// afterwards its state is INITIALISED and its `id` the identifier whatever happened. `descr_avail`
// is NO_DESCRIPTION exactly where the file could not be opened. Faulty entries are handed to
// `listener` as they are met, and skipped; so is that a description which is there cannot be read,
// or not to its end.
read_outcome read_product(std::string_view directory, std::string_view identifier, product& record,
                          const fault_listener& listener = diagnose_fault);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_DESCRIPTION_PARSER_H
