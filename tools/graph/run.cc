#include "graph/run.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/product_files.h"
#include "depend/needs.h"
#include "depend/patch_match.h"
#include "platform/input_file.h"

namespace morvane {

namespace {

// Longer lines than the program writes are of no interest.
constexpr std::size_t LONGEST_LINE = 1024;
constexpr std::size_t MOST_LINES = 10000;

// What the settings say of a product: itself or a supplier.
struct settings_entry {
  std::string category;  // "PRODUCT" for the product itself
  std::string name;
  std::string path;
  std::string type;
  std::string version;
};

constexpr std::string_view OWN = "PRODUCT";

// Takes a line "CATEGORY_NAME = VALUE". Each name begins another product.
void take_line(std::string_view line, std::vector<settings_entry>& entries) {
  const std::size_t equals = line.find(" = ");
  if (equals == std::string_view::npos) return;
  const std::string_view key = line.substr(0, equals);
  const std::size_t underscore = key.rfind('_');
  if (underscore == std::string_view::npos) return;
  const std::string_view category = key.substr(0, underscore);
  const std::string_view field = key.substr(underscore + 1);
  const std::string value(line.substr(equals + 3));
  if (field == "NAME") entries.push_back({std::string(category), value, "", "", ""});
  if (entries.empty() || entries.back().category != category) return;
  if (field == "PATH") entries.back().path = value;
  if (field == "TYPE") entries.back().type = value;
  if (field == "VERSION") entries.back().version = value;
}

// Returns what a settings file says, the product itself first; nothing where it is none.
std::vector<settings_entry> read_settings(const std::string& path) {
  std::vector<settings_entry> entries;
  input_file file(path);
  std::string line;
  for (std::size_t i = 0; i < MOST_LINES && file.peek() != input_file::END; ++i) {
    line.clear();
    file.read_line(LONGEST_LINE, line);
    if (line.ends_with('\n')) line.pop_back();
    take_line(line, entries);
  }
  if (entries.empty() || entries.front().category != OWN) return {};
  return entries;
}

struct configured_product {
  const distributed_product* product = nullptr;
  std::vector<settings_entry> settings;

  const settings_entry& own() const { return settings.front(); }
};

picture_node node_of(const configured_product& each) {
  const product& record = each.product->description.record;
  picture_node node;
  node.kind = record.release.patch > 0 ? node_kind::PATCH : node_kind::PRODUCT;
  node.lines = {each.product->identifier, each.own().version, each.own().path};
  node.details = each.own().name;
  node.product = each.product->identifier;
  node.path = each.own().path;
  return node;
}

picture_node node_of_supplier(const settings_entry& supplier) {
  picture_node node;
  node.kind = node_kind::HOST;
  node.lines = {supplier.name, supplier.path};
  node.details = supplier.category + ": " + supplier.type + " " + supplier.version;
  node.path = supplier.path;
  return node;
}

}  // namespace

picture picture_of_run(const std::string& directory, const distribution& looked_at) {
  std::vector<configured_product> configured;
  for (const distributed_product& product : looked_at.products) {
    auto settings =
        read_settings(directory + "/" + product.identifier + std::string(SETTINGS_ENDING));
    if (!settings.empty()) configured.push_back({&product, std::move(settings)});
  }

  picture drawn;
  for (const configured_product& each : configured) drawn.nodes.push_back(node_of(each));
  const auto of_this_run = [&](const settings_entry& supplier) -> std::optional<std::size_t> {
    for (std::size_t i = 0; i < configured.size(); ++i) {
      const settings_entry& own = configured[i].own();
      if (own.name == supplier.name && own.path == supplier.path &&
          own.version == supplier.version) {
        return i;
      }
    }
    return std::nullopt;
  };
  for (std::size_t i = 0; i < configured.size(); ++i) {
    for (const settings_entry& supplier : configured[i].settings) {
      if (supplier.category == OWN) continue;
      const auto found = of_this_run(supplier);
      const std::size_t to = found ? *found : node_for(drawn, node_of_supplier(supplier));
      edge_for(drawn, i, to, edge_kind::NEED)
          .needs.push_back(
              {.part = "", .needs = supplier.category, .optional = false, .elsewhere = false});
    }
    const product& record = configured[i].product->description.record;
    for (const need& dependency : needs_of(record)) {
      if (dependency.patch == nullptr) continue;
      for (std::size_t other = 0; other < configured.size(); ++other) {
        const product& original = configured[other].product->description.record;
        if (configured[other].own().path != configured[i].own().path) continue;
        if (!match_patch(record, original, dependency.patch->level)) continue;
        edge_for(drawn, i, other, edge_kind::PATCH_OF);
      }
    }
  }
  return drawn;
}

}  // namespace morvane
