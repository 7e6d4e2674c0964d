// A receipt for a product that was installed without one.
#ifndef MORVANE_VERIFY_AFTERWARDS_H
#define MORVANE_VERIFY_AFTERWARDS_H

#include <string>
#include <variant>

#include "output/product_facts.h"
#include "receipt/receipt.h"
#include "receipt/receipt_store.h"

namespace morvane {

// Returns the receipt of a product that was installed from the distribution in the current
// directory, by what its makefile told and its archive holds; what its parts may have made is
// uncertain. `store` has the receipts of the products that lie in the same directory. Returns why
// that cannot be told where the product is not installed, or its archive is gone.
std::variant<receipt, std::string> receipt_afterwards(const product_facts& facts,
                                                      const receipt_store& store);

}  // namespace morvane

#endif  // MORVANE_VERIFY_AFTERWARDS_H
