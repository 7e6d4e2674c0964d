#include "depend/order.h"

#include <algorithm>

#include "depend/needs.h"
#include "platform/diagnostic.h"

namespace morvane {

namespace {

// Products that need themselves can fill the order before all are placed. What finds no place then
// is followed again wherever it is needed, with every ring reported again. Descriptions could keep
// that up for ever: after this many placements nothing more is followed.
constexpr std::size_t MOST_PLACEMENTS = 10000;

bool is_placed(const product& record, const installation_order& order) {
  return std::find(order.begin(), order.end(), &record) != order.end();
}

// Tells whether the supplier must be installed first. Some targets take suppliers elsewhere.
bool comes_first(const need& dependency) {
  const bool elsewhere = dependency.target != nullptr && dependency.target->need_no_install != 0;
  return !elsewhere && dependency.supplier != nullptr && is_ordered(*dependency.supplier);
}

// Places `supplier`, which the last product of `path` depends on, unless it has its place or closes
// a ring. That last product is not part of the ring test: a product that depends on itself is
// entered once more and stands twice in the order, as it always did.
void follow(product& supplier, std::vector<product*>& path, installation_order& order,
            std::size_t& count, const ring_listener& listener) {
  if (count >= MOST_PLACEMENTS) return;
  const auto earlier = std::find(path.begin(), path.end() - 1, &supplier);
  if (earlier != path.end() - 1) {
    listener({earlier, path.end()});
    return;
  }
  if (!is_placed(supplier, order)) order_entry(supplier, path, order, count, listener);
}

}  // namespace

void diagnose_ring(std::span<product* const>) {
  diagnose_error("product dependencies build a ring, installation may fail.");
}

void order_entry(product& record, std::vector<product*>& path, installation_order& order,
                 std::size_t& count, const ring_listener& listener) {
  path.push_back(&record);
  for (const need& dependency : needs_of(record)) {
    if (comes_first(dependency)) follow(*dependency.supplier, path, order, count, listener);
  }
  path.pop_back();
  if (count < order.size()) order[count] = &record;
  ++count;
}

std::size_t get_inst_order(product_table& table, installation_order& order,
                           const ring_listener& listener) {
  order.fill(nullptr);
  std::vector<product*> path;
  std::size_t count = 0;
  for (product& record : table) {
    if (!is_ordered(record) || is_placed(record, order)) continue;
    order_entry(record, path, order, count, listener);
  }
  return std::min(count, order.size());
}

}  // namespace morvane
