// What a product depends on, as a list of edges.
#ifndef MORVANE_DEPEND_NEEDS_H
#define MORVANE_DEPEND_NEEDS_H

#include <vector>

#include "catalogue/product.h"

namespace morvane {

// A dependency: either a category dependency of a target, or a needed patch. Points into the
// product's record.
struct need {
  product* supplier = nullptr;             // null while it is not settled
  const target_dep* target = nullptr;      // null for a patch
  const category_dep* category = nullptr;  // of the target; null for a patch
  const needed_patch* patch = nullptr;     // null for a category dependency
};

// Returns everything that `record` needs, settled or not: the category dependencies of its targets
// in their order, then its needed patches.
std::vector<need> needs_of(const product& record);

}  // namespace morvane

#endif  // MORVANE_DEPEND_NEEDS_H
