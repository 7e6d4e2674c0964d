// Who would lack a product that is taken away.
#ifndef MORVANE_REMOVE_DEPENDENTS_H
#define MORVANE_REMOVE_DEPENDENTS_H

#include <string>
#include <vector>

#include "receipt/receipt_store.h"
#include "remove/removal.h"

namespace morvane {

// Adds the receipts of the products in `directory` and in the directories below it; and for a
// product without one what its settings file there tells: a receipt with its needs, without any
// entry. Returns false, with `errno` telling why, where the directory cannot be read.
bool add_products_below(receipt_store& store, const std::string& directory);

// The same for the products in one directory.
void add_settings_in(receipt_store& store, const std::string& directory);

// Returns a line for each product that stays and needs one of `removed`, or that one of them is the
// original of; behind it those that need that one in turn.
std::vector<std::string> who_needs(const receipt_store& store, const product_set& removed);

// Returns the products in the order in which they are taken away: each before what it needs.
std::vector<const stored_receipt*> in_order(const std::vector<const stored_receipt*>& products);

}  // namespace morvane

#endif  // MORVANE_REMOVE_DEPENDENTS_H
