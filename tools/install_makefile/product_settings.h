// What the settings file of a product says.
#ifndef MORVANE_INSTALL_MAKEFILE_PRODUCT_SETTINGS_H
#define MORVANE_INSTALL_MAKEFILE_PRODUCT_SETTINGS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

// A longer settings file is none: in bytes.
inline constexpr std::size_t LONGEST_SETTINGS = 1'048'576;

// A product that a chosen part needs.
struct settled_need {
  std::string category;
  std::string name;
  std::string directory;
  std::string type;
  std::string version;

  bool operator==(const settled_need&) const = default;
};

struct product_settings {
  std::string name;
  std::string directory;
  std::string owner;
  std::string group;
  bool access = true;  // others keep it
  std::string version;
  std::vector<settled_need> needs;  // of one category, the later ones count for make

  bool operator==(const product_settings&) const = default;
};

// Reads `text`, the content of a settings file. Lines that are none of settings are passed over.
product_settings read_settings(std::string_view text);

}  // namespace morvane

#endif  // MORVANE_INSTALL_MAKEFILE_PRODUCT_SETTINGS_H
