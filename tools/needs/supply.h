// What the products of a distribution need, and which of its products could supply it.
#ifndef MORVANE_NEEDS_SUPPLY_H
#define MORVANE_NEEDS_SUPPLY_H

#include <cstddef>
#include <string>
#include <vector>

#include "catalogue/product.h"
#include "distribution/distribution.h"
#include "platform/input_file.h"

namespace morvane {

// How a product compares with what is needed.
enum class fit {
  FITS,
  IF_ACCEPTED,  // for a patch: so little is the same that the operator is asked
  TOO_OLD,
  OTHER_TYPE,
};

// A product of the needed category, or one that a patch could build on.
struct candidate {
  std::size_t product = 0;                // which one of the distribution's needs
  const type_dep* alternative = nullptr;  // that it was compared with, if there is one of its type
  morvane::fit fit = fit::FITS;
};

struct supplied_need {
  const target_dep* part = nullptr;        // null for a patch level
  const category_dep* category = nullptr;  // of the part; null for a patch level
  int level = 0;                           // of the product itself, where there is no part
  place_in_file place;                     // of NeedsCategory or RequiredPatches
  std::vector<place_in_file> types;        // of each NeedsType
  std::vector<candidate> candidates;       // in the order of the products
};

struct product_needs {
  const distributed_product* product = nullptr;
  std::vector<supplied_need> needs;

  const morvane::product& record() const { return product->description.record; }
};

// The products that the program offers: those with an archive, or a source tree that is to become
// one, and no more than its table holds.
using distribution_needs = std::vector<product_needs>;

// Returns what the products of `looked_at` need, as if all of them were selected. It points into
// `looked_at`.
distribution_needs needs_in(const distribution& looked_at);

// Tells whether the operator can take the candidate without overruling the program.
bool is_usable(const candidate& offered);

// Tells whether a product of the distribution can meet the need.
bool is_met(const supplied_need& need);

// Tells whether the supplier may be on another host: then any directory will do, and the supplier
// need not be installed first.
bool is_elsewhere(const supplied_need& need);

// Tells whether the product cannot be installed without what is needed: the operator can leave out
// a part that asks.
bool is_required(const supplied_need& need);

// Returns the candidate of an unmet need that comes nearest: of the right type and as new as there
// is, else one of another type; null where there is none.
const candidate* nearest_candidate(const distribution_needs& needs, const supplied_need& need);

// Returns what is needed, such as "STORE hashed 1.4 or flat 2.0" or "patch level 0".
std::string shown_need(const supplied_need& need);

// Returns the same of one alternative, such as "hashed 1.4".
std::string shown_alternative(const type_dep& alternative);

}  // namespace morvane

#endif  // MORVANE_NEEDS_SUPPLY_H
