#include "depend/patches.h"

#include <string>

#include "console/printer.h"
#include "console/question.h"
#include "depend/confirmation.h"
#include "messages/table.h"
#include "settings/refusal.h"
#include "text/format.h"

namespace morvane {

namespace {

// Returns the best matching slot that is good enough by itself or accepted by the operator, or
// null.
product* find_supplier(const product& record, product_table& table, const match_levels& levels) {
  for (const match_level wanted : MATCH_LEVELS) {
    const bool silent = is_taken_silently(wanted);
    for (std::size_t slot = 0; slot < table.size(); ++slot) {
      if (levels[slot] != wanted) continue;
      if (silent || product_accept(record, std::nullopt, table[slot])) return &table[slot];
    }
  }
  return nullptr;
}

void print_indented(std::string_view text) {
  print_with_cr2(text, screen_width(), "        ", "");
}

// Tells that nothing supplies patch level `patch`, and asks whether to leave it so.
bool leave_open(const product& record, int patch) {
  print(fill("\n\n%s\n", {r[PATCH_NOT_FOUND]}));
  std::string missing = fill("\n'%s %s' %s '%s ",
                             {record.name, product_version(record), r[PATCH_NEEDS], record.name});
  missing += patch > 0 ? fill("patch %d'.\n\n", {patch}) : "original'.\n\n";
  print_indented(missing);
  print_indented(fill("%s '%s'.\n", {r[PATCH_DIRECTORY], record.path}));
  return choose_y_or_n({.number = LEAVE_PATCH_OPEN,
                        .text = std::string(r[LEAVE_PATCH_OPEN]),
                        .product = &record,
                        .patch = patch});
}

}  // namespace

void gen_possible(const product* record, const product_table& table, int patch,
                  match_levels& levels) {
  if (refuse_product_mismatch(record, "gen_possible")) return;
  for (std::size_t slot = 0; slot < table.size(); ++slot) {
    const product& candidate = table[slot];
    levels[slot] =
        on_host_after_run(candidate) ? match_patch(*record, candidate, patch) : std::nullopt;
  }
}

void get_patch_depend(product_table& table, product* record, bool ask) {
  // First, and without a word: a run calls this for every slot of the table, free ones too.
  if (record != nullptr && !on_host_after_run(*record)) return;
  if (refuse_product_mismatch(record, "get_patch_depend")) return;
  for (auto& [level, supplier] : record->needed_patches) {
    if (level < 0 || supplier != nullptr) continue;
    match_levels levels;
    gen_possible(record, table, level, levels);
    do {
      supplier = find_supplier(*record, table, levels);
    } while (supplier == nullptr && ask && !leave_open(*record, level));
  }
}

void export_path_to_patch_depend(const product& record) {
  if (!on_host_after_run(record) || record.settled.path == path_state::UNSETTLED) return;
  for (const auto& [level, supplier] : record.needed_patches) {
    if (level < 0 || supplier == nullptr) continue;
    const bool in_this_run = on_host_after_run(*supplier) && !already_installed(*supplier);
    if (!in_this_run || supplier->settled.path != path_state::UNSETTLED) continue;
    supplier->path = record.path;
    supplier->settled.path = record.settled.path;
  }
}

}  // namespace morvane
