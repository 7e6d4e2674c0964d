// What the rules of a product are composed from: its record, and what the host says of it now.
#ifndef MORVANE_OUTPUT_PRODUCT_FACTS_H
#define MORVANE_OUTPUT_PRODUCT_FACTS_H

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/product.h"

namespace morvane {

// The configurator's own files that are copied into every new product, so that it can be configured
// again from its own directory.
inline constexpr std::array<std::string_view, 4> INST_FILES = {"morvane.rsc", "morvane.SunOS4",
                                                               "morvane.SunOS5", "Makefile"};

struct product_facts {
  const product* record = nullptr;       // a configured product, or one configured again
  bool superuser = false;                // the configurator acts as one
  bool link_option = false;              // chown and chgrp must be told not to follow links
  std::optional<std::string> old_owner;  // whose files are handed on to the product's owner
  std::optional<std::string> old_group;  // the same for the group
  std::vector<std::string> files;        // to be copied: those that lie in the current directory
};

// Tells whether the archive of `record` is extracted, instead of a mere configuration.
bool is_new(const product& record);

bool is_described(const product& record);

// Return the names of the product's description and settings file, such as "app.descr".
std::string description_file(const product& record);
std::string settings_file(const product& record);

// Returns the facts about `record`, which must outlive them. `host_system` is the system that the
// rules will run on. A file to be copied that is missing in the current directory is reported on
// standard error.
product_facts gather_facts(const product& record, std::string_view host_system);

}  // namespace morvane

#endif  // MORVANE_OUTPUT_PRODUCT_FACTS_H
