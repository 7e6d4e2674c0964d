#include "depend/order.h"

#include <algorithm>

#include "platform/diagnostic.h"
#include "text/format.h"

namespace morvane {

namespace {

// Products that need themselves can fill the order before all are placed. What finds no place then
// is followed again wherever it is needed, with every ring reported again. Descriptions could keep
// that up for ever: after this many placements nothing more is followed.
constexpr int MOST_PLACEMENTS = 10000;

bool is_placed(const product& record, const installation_order& order) {
  return std::find(order.begin(), order.end(), &record) != order.end();
}

// Places `supplier`, which the last product of `path` depends on, unless it has its place or closes
// a ring. That last product is not part of the ring test: a product that depends on itself is
// entered once more and stands twice in the order, as it always did.
void follow(product* supplier, std::vector<product*>& path, installation_order& order, int& count) {
  if (supplier == nullptr || !is_ordered(*supplier) || count >= MOST_PLACEMENTS) return;
  if (std::find(path.begin(), path.end() - 1, supplier) != path.end() - 1) {
    diagnose_error("product dependencies build a ring, installation may fail.");
    return;
  }
  if (!is_placed(*supplier, order)) order_entry(*supplier, path, order, count);
}

}  // namespace

void order_entry(product& record, std::vector<product*>& path, installation_order& order,
                 int& count) {
  path.push_back(&record);
  for (const auto& target : record.target_dep) {
    if (target == nullptr || target->need_no_install != 0) continue;
    for (const auto& category : target->category_dep) {
      if (category != nullptr) follow(category->product, path, order, count);
    }
  }
  for (const needed_patch& patch : record.needed_patches) {
    follow(patch.supplier, path, order, count);
  }
  path.pop_back();
  if (count < TABLE_SIZE) order[static_cast<std::size_t>(count)] = &record;
  ++count;
}

int get_inst_order(product_table& table, installation_order& order) {
  order.fill(nullptr);
  std::vector<product*> path;
  int count = 0;
  for (product& record : table) {
    if (is_ordered(record) && !is_placed(record, order)) order_entry(record, path, order, count);
  }
  return std::min(count, TABLE_SIZE);
}

}  // namespace morvane
