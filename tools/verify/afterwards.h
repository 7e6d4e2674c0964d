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
// directory, by what its makefile told and its archive holds, as far as that tells it. Returns why
// that cannot be told where the product is not installed, or its archive is gone.
std::variant<receipt, std::string> receipt_afterwards(const product_facts& facts);

// Adds what the directory of the product tells: files that nobody else in `store` has, and that
// came after its parts were prepared, may be theirs; a directory with no other files of nobody
// counts as made by the product. `made` is one of `store`. Returns false where something cannot be
// read, as `errno` tells.
bool add_surroundings(receipt& made, const receipt_store& store);

}  // namespace morvane

#endif  // MORVANE_VERIFY_AFTERWARDS_H
