#include "depend/needs.h"

namespace morvane {

std::vector<need> needs_of(const product& record) {
  std::vector<need> needs;
  for (const auto& target : record.target_dep) {
    if (target == nullptr) continue;
    for (const auto& category : target->category_dep) {
      if (category == nullptr) continue;
      needs.push_back(
          {.supplier = category->product, .target = target.get(), .category = category.get()});
    }
  }
  for (const needed_patch& patch : record.needed_patches) {
    // Behind the end mark too (see `needed_patches`).
    if (patch.level >= 0) needs.push_back({.supplier = patch.supplier, .patch = &patch});
  }
  return needs;
}

}  // namespace morvane
