#include "depend/resolution.h"

#include <span>

#include "catalogue/rescan.h"
#include "console/printer.h"
#include "depend/category_resolution.h"
#include "depend/confirmation.h"
#include "depend/patches.h"
#include "messages/table.h"
#include "text/format.h"

namespace morvane {

namespace {

// Decides whether `target` is installed; returns false where that gives `record` up.
// A product that was given up comes here in a third state, when its settings are asked for again:
// its targets then stay as they are.
bool decide_target(product& record, target_dep& target) {
  if (record.install == product_state::SELECTED_FOR_RECONFIGURATION) {
    re_installation(record, target);
  } else if (record.install == product_state::SELECTED && !new_installation(record, target)) {
    print(fill("%s '%s' !\n\n%s ", {r[NO_RIGHTS_FOR_TARGET], target.target, r[PRODUCT_GIVEN_UP]}));
    print(fill("%s !\n\n", {record.name}));
    unselect(record);
    return false;
  }
  return true;
}

void resolve_target(const product& record, target_dep& target, product_table& table) {
  for (const auto& category : target.category_dep) {
    if (category != nullptr) resolve_category_dep(record, target, *category, table);
  }
  target.install = target_state::RESOLVED;
}

}  // namespace

void get_product_depend(product& record, product_table& table) {
  for (const auto& target : record.target_dep) {
    if (target == nullptr) continue;
    if (target->install != target_state::RESOLVED && !decide_target(record, *target)) return;
    if (target->install == target_state::WANTED) resolve_target(record, *target, table);
  }
  // The original that a patch applies to is often installed in the patch's own directory.
  if (record.needed_patches[0].level >= 0) read_all_descr_files(table, record.path);
  get_patch_depend(table, &record, true);
}

void undo_get_product_depend(product& record, product_table& table, std::size_t first_free) {
  // The products that stay keep the mark that their directory was read: it is not read again.
  for (product& found : std::span(table).subspan(first_free)) found.install = product_state::FREE;
  for (const auto& target : record.target_dep) {
    if (target == nullptr) continue;
    target->install = target_state::NOT_WANTED;
    for (const auto& category : target->category_dep) {
      if (category != nullptr) category->product = nullptr;
    }
  }
  for (needed_patch& patch : record.needed_patches) patch.supplier = nullptr;
}

}  // namespace morvane
