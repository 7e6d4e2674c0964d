#include "answers/plan.h"

#include "answers/supplier.h"
#include "text/format.h"

namespace morvane {

namespace {

std::vector<planned_part> parts_of(const product& record) {
  std::vector<planned_part> parts;
  for (std::size_t slot = 0; slot < TARGETS; ++slot) {
    const target_dep* target = resolved_target(record, slot);
    if (target == nullptr) continue;
    planned_part part;
    part.name = target->target;
    for (const auto& category : target->category_dep) {
      if (category == nullptr || category->product == nullptr) continue;
      part.needs.push_back(
          {std::string(category->category), supplier_text(supplier_of(*category->product))});
    }
    parts.push_back(std::move(part));
  }
  return parts;
}

}  // namespace

std::vector<planned_product> plan_of(const product_table& table) {
  std::vector<planned_product> plan;
  for (const product& record : table) {
    if (!is_ordered(record)) continue;
    plan.push_back({.id = std::string(record.id),
                    .version = version_numbers(record.release),
                    .directory = std::string(record.path),
                    .owner = std::string(record.owner),
                    .group = std::string(record.group),
                    .other_access = record.other_access,
                    .again = record.install == product_state::SELECTED_FOR_RECONFIGURATION,
                    .parts = parts_of(record)});
  }
  return plan;
}

std::string plan_text(const std::vector<planned_product>& plan) {
  std::string text;
  for (const planned_product& each : plan) {
    text += fill("%s %s -> %s   %s   owner %s, group %s, others %s\n",
                 {each.id, each.version, each.directory, each.again ? "again" : "new", each.owner,
                  each.group, each.other_access ? "keep access" : "have no access"});
    for (const planned_part& part : each.parts) {
      text += fill("  part %s", {part.name});
      const char* separator = ": ";
      for (const planned_need& need : part.needs) {
        text += fill("%s%s from %s", {separator, need.category, need.supplier});
        separator = ", ";
      }
      text += "\n";
    }
  }
  return text;
}

}  // namespace morvane
