// What the questions about a product cannot work with, told on standard error.
#ifndef MORVANE_SETTINGS_REFUSAL_H
#define MORVANE_SETTINGS_REFUSAL_H

#include <string_view>

#include "catalogue/product.h"

namespace morvane {

// Tells of a missing (null) or free record, which `operation` cannot ask about; returns whether it
// is one.
bool refuse_invalid_product(const product* record, std::string_view operation);

// The same in the words of the operations on patches.
bool refuse_product_mismatch(const product* record, std::string_view operation);

// Tells of characters that make or the shell would interpret in `name`, which is a `kind`, such as
// "path"; returns whether it holds any.
bool refuse_special_characters(std::string_view kind, std::string_view name);

}  // namespace morvane

#endif  // MORVANE_SETTINGS_REFUSAL_H
