// The products that a command line means, among those that have a receipt.
#ifndef MORVANE_INSTALLED_SELECTION_H
#define MORVANE_INSTALLED_SELECTION_H

#include <string>
#include <vector>

#include "receipt/receipt_store.h"

namespace morvane {

// Returns the receipts of the registry, those beside the products that it names, and those beside
// the products in the directories that `operands` name. What cannot be read is a fault of the
// store.
receipt_store load_receipts(const std::string& registry, const std::vector<std::string>& operands);

struct selection {
  std::vector<const stored_receipt*> products;  // each once, in the order of the operands
  std::vector<std::string> faults;              // of operands that mean none, or several
};

// Returns the products that the operands mean: an identifier; a directory, which stands for all
// that are installed in it; or DIRECTORY/install/ID.receipt, for the one in it. Without operands:
// all.
selection select_products(const receipt_store& store, const std::vector<std::string>& operands);

}  // namespace morvane

#endif  // MORVANE_INSTALLED_SELECTION_H
