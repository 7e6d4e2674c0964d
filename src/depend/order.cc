#include "depend/order.h"

#include <algorithm>

#include "console/message_format.h"
#include "platform/diagnostic.h"
#include "version/version.h"

namespace morvane {

namespace {

bool contains(const std::vector<product*>& products, const product* wanted) {
  return std::find(products.begin(), products.end(), wanted) != products.end();
}

// Places `supplier`, which the last product of `path` depends on, unless it has its place or closes
// a ring. That last product is not part of the ring test: a product that depends on itself is
// entered once more and stands twice in the order, as it always did.
void follow(product* supplier, std::vector<product*>& path, std::vector<product*>& placed) {
  if (supplier == nullptr || !is_ordered(*supplier)) return;
  if (std::find(path.begin(), path.end() - 1, supplier) != path.end() - 1) {
    diagnose(fill("%s : error : product dependencies build a ring, installation may fail.\n",
                  {PROGRAM_NAME}));
    return;
  }
  if (!contains(placed, supplier)) order_entry(*supplier, path, placed);
}

}  // namespace

void order_entry(product& record, std::vector<product*>& path, std::vector<product*>& placed) {
  path.push_back(&record);
  for (const auto& target : record.target_dep) {
    if (target == nullptr || target->need_no_install != 0) continue;
    for (const auto& category : target->category_dep) {
      if (category != nullptr) follow(category->product, path, placed);
    }
  }
  for (product* supplier : record.needed_patch_product) follow(supplier, path, placed);
  path.pop_back();
  placed.push_back(&record);
}

int get_inst_order(product_table& table, installation_order& order) {
  std::vector<product*> path;
  std::vector<product*> placed;
  for (product& record : table) {
    if (is_ordered(record) && !contains(placed, &record)) order_entry(record, path, placed);
  }
  placed.resize(std::min(placed.size(), order.size()));
  order.fill(nullptr);
  std::copy(placed.begin(), placed.end(), order.begin());
  return static_cast<int>(placed.size());
}

}  // namespace morvane
