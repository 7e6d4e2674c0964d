#include "catalogue/product.h"

#include <algorithm>

namespace morvane {

void init_product(product& record) {
  record = product();
  record.install = product_state::INITIALISED;
}

std::size_t get_next_free_product(const product_table& table) {
  std::size_t slot = 0;
  while (slot < table.size() && !is_free(table[slot])) ++slot;
  return slot;
}

bool is_free(const product& record) {
  return record.install < product_state::INITIALISED;
}

bool on_host_after_run(const product& record) {
  return record.install >= product_state::SELECTED;
}

bool already_installed(const product& record) {
  return record.install >= product_state::ACCEPTED;
}

bool is_selected(const product& record) {
  return record.install == product_state::SELECTED ||
         record.install == product_state::SELECTED_FOR_RECONFIGURATION;
}

void unselect(product& record) {
  record.install = record.install == product_state::SELECTED ? product_state::AVAILABLE
                                                             : product_state::INSTALLED;
}

// What is configured again has no state of its own once its settings are accepted: it counts from
// its selection on.
bool is_ordered(const product& record) {
  return record.install == product_state::CONFIGURED ||
         record.install == product_state::SELECTED_FOR_RECONFIGURATION;
}

std::string_view product_name(const product& record) {
  if (!record.full_name.empty()) return record.full_name;
  if (!record.name.empty()) return record.name;
  return record.id;
}

std::string product_version(const product& record) {
  return "version " + version_numbers(record.release);
}

type_alternatives alternatives(const category_dep& category) {
  const auto& types = category.type_dep;
  return {types.begin(), std::find(types.begin(), types.end(), nullptr)};
}

const type_dep* chosen_alternative(const category_dep& category) {
  if (!category.type_num || alternatives(category).empty()) return nullptr;
  return category.type_dep[*category.type_num].get();
}

std::vector<std::string_view> required_files(const type_dep& type) {
  std::vector<std::string_view> files;
  for (const long_text& file : type.file_dep) {
    if (file && !file->empty()) files.push_back(*file);
  }
  return files;
}

const target_dep* resolved_target(const product& record, std::size_t slot) {
  const target_dep* target = record.target_dep[slot].get();
  return target != nullptr && target->install == target_state::RESOLVED ? target : nullptr;
}

}  // namespace morvane
