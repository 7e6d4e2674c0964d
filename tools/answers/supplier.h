// Who supplies what a part, or a patch, needs.
#ifndef MORVANE_ANSWERS_SUPPLIER_H
#define MORVANE_ANSWERS_SUPPLIER_H

#include <optional>
#include <string>
#include <string_view>

#include "catalogue/product.h"

namespace morvane {

struct supplier {
  std::string id;         // empty for one without a description
  std::string directory;  // where it lies; empty for a product of this run
  bool anyway = false;    // taken although it does not meet the need

  bool operator==(const supplier&) const = default;
};

// Returns `record`, which is offered or chosen, as a supplier.
supplier supplier_of(const product& record);

// Returns the value that says so: "ID", "ID in /directory", "/directory" or "/directory anyway".
std::string supplier_text(const supplier& shown);

// Returns what such a value says, the directory normalised, or nothing where it is another one.
std::optional<supplier> read_supplier(std::string_view value);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_SUPPLIER_H
