// The product selection dialogue.
#ifndef MORVANE_SETTINGS_SELECTION_H
#define MORVANE_SETTINGS_SELECTION_H

#include <optional>
#include <string_view>
#include <vector>

#include "catalogue/product.h"

namespace morvane {

// Lists what can be installed or reconfigured, takes the operator's selection or shows details,
// until a selection is confirmed. Selected products go from AVAILABLE to SELECTED, and from
// INSTALLED to SELECTED_FOR_RECONFIGURATION; the check of the tools may have moved some back.
void choose_SW_to_install(product_table& table);

// Returns the product numbers that a selection line names, in order, as `take_number` reads them: a
// line that starts with a blank names its first number twice. A start without digits reads as 0.
std::vector<int> read_selection(std::string_view line);

// Returns the product number whose details a line asks for with "?", or nothing.
std::optional<int> read_details_request(std::string_view line);

}  // namespace morvane

#endif  // MORVANE_SETTINGS_SELECTION_H
