// Which products can be installed from their distribution alone, and which need each other.
#ifndef MORVANE_NEEDS_PROSPECTS_H
#define MORVANE_NEEDS_PROSPECTS_H

#include <cstddef>
#include <functional>
#include <vector>

#include "needs/supply.h"

namespace morvane {

enum class prospect {
  INSTALLABLE,
  IN_RING,  // everything can be met, but not before it is needed, whatever the operator chooses
  NEVER,    // something cannot be met, whatever the operator selects
};

using need_filter = std::function<bool(const supplied_need&)>;

// Returns the prospect of each product, in their order, where only the needs that `counts` are
// looked at. A need whose supplier may be elsewhere never counts. Needs are minimums and nothing
// excludes anything else: a larger selection meets whatever a smaller one does.
std::vector<prospect> prospects(const distribution_needs& needs,
                                const need_filter& counts = is_required);

// A product of a ring, and which need of it the next product meets; behind the last comes the
// first.
struct ring_step {
  std::size_t product = 0;
  const supplied_need* need = nullptr;
};

struct ring {
  std::vector<ring_step> steps;
  bool avoidable = false;  // by another choice among the suppliers
};

// Returns rings of needs, of all parts, so that each product which is in any is in one of them. A
// ring begins with the product that comes first in the distribution.
std::vector<ring> rings_in(const distribution_needs& needs);

}  // namespace morvane

#endif  // MORVANE_NEEDS_PROSPECTS_H
