// The text of the installation makefile, composed from facts.
#ifndef MORVANE_OUTPUT_MAKEFILE_TEXT_H
#define MORVANE_OUTPUT_MAKEFILE_TEXT_H

#include <string>
#include <string_view>
#include <vector>

#include "output/product_facts.h"
#include "text/places.h"

namespace morvane {

// Return what the texts of `rule_texts.h` are filled with for a product, and which of their lines
// stand.
places places_of(const product_facts& facts);
conditions conditions_of(const product_facts& facts);

// Returns the rules that install one product, or, where it is installed, configure it again.
std::string product_rules(const product_facts& facts);

// Returns the makefile for `products`, in the order of the work, but for the head of every
// generated file. `directory` is the one that holds the archives.
std::string makefile_text(std::string_view directory, const std::vector<product_facts>& products);

}  // namespace morvane

#endif  // MORVANE_OUTPUT_MAKEFILE_TEXT_H
