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
  std::string id;
  std::string name;        // may be empty
  std::string shown_name;  // as in headings
  std::string path;
  std::string owner;
  std::string group;
  bool is_new = false;               // its archive is extracted, instead of a mere configuration
  bool described = false;            // it has a description
  bool closed = false;               // other users lose their access
  std::vector<std::string> targets;  // those that are made

  bool superuser = false;                // the configurator acts as one
  bool link_option = false;              // chown and chgrp must be told not to follow links
  std::optional<std::string> old_owner;  // whose files are handed on to the product's owner
  std::optional<std::string> old_group;  // the same for the group
  std::vector<std::string> files;        // to be copied: those that lie in the current directory

  bool operator==(const product_facts&) const = default;
};

// Return the names of the description and settings file of product `id`, such as "app.descr".
std::string description_file(std::string_view id);
std::string settings_file(std::string_view id);

// Returns the files that the rules of a product copy where they lie in the current directory, in
// their order.
std::vector<std::string> files_to_copy(const product_facts& facts);

// Returns what `record`, a configured product, or one configured again, says by itself.
product_facts facts_of(const product& record);

// Returns all facts about `record`. `host_system` is the system that the rules will run on. A file
// to be copied that is missing in the current directory is reported on standard error.
product_facts gather_facts(const product& record, std::string_view host_system);

}  // namespace morvane

#endif  // MORVANE_OUTPUT_PRODUCT_FACTS_H
