#include "install_makefile/product_settings.h"

#include "install_makefile/rule_match.h"

namespace morvane {

namespace {

constexpr std::string_view EQUALS = " = ";

// Takes the settings of the product itself; returns whether this is one.
bool take_own(std::string_view name, std::string_view value, product_settings& settings) {
  if (name == "PRODUCT_NAME") {
    settings.name = value;
  } else if (name == "PRODUCT_PATH") {
    settings.directory = value;
  } else if (name == "PRODUCT_OWNER") {
    settings.owner = value;
  } else if (name == "PRODUCT_GROUP") {
    settings.group = value;
  } else if (name == "PRODUCT_ACCESS") {
    settings.access = value != "0";
  } else if (name == "PRODUCT_VERSION") {
    settings.version = value;
  } else {
    return false;
  }
  return true;
}

// The four settings of a need follow each other, its name first.
void take_needed(std::string_view name, std::string_view value, product_settings& settings) {
  const std::size_t line = name.rfind('_');
  if (line == std::string_view::npos) return;
  const std::string_view category = name.substr(0, line);
  const std::string_view what = name.substr(line);
  if (what == "_NAME") {
    settled_need& need = settings.needs.emplace_back();
    need.category = category;
    need.name = value;
    return;
  }
  if (settings.needs.empty() || settings.needs.back().category != category) return;
  settled_need& need = settings.needs.back();
  if (what == "_PATH") need.directory = value;
  if (what == "_TYPE") need.type = value;
  if (what == "_VERSION") need.version = value;
}

}  // namespace

product_settings read_settings(std::string_view text) {
  product_settings settings;
  for (const std::string_view line : lines_of(text)) {
    const std::size_t equals = line.find(EQUALS);
    if (line.starts_with('#') || equals == std::string_view::npos) continue;
    const std::string_view name = line.substr(0, equals);
    const std::string_view value = line.substr(equals + EQUALS.size());
    if (!take_own(name, value, settings)) take_needed(name, value, settings);
  }
  return settings;
}

}  // namespace morvane
