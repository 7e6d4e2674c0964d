#include "driver/catalogue_load.h"

#include <string>

#include "catalogue/description_parser.h"
#include "catalogue/listing.h"
#include "catalogue/rescan.h"
#include "console/message_table.h"

namespace morvane {

namespace {

// Returns false, after a report, where the table is full.
bool load_archives(product_table& table) {
  std::size_t slot = 0;
  for (const std::string& name : get_files(".", "*.tar")) {
    if (slot == table.size()) {
      report_full_table();
      return false;
    }
    product& record = table[slot++];
    read_product(".", identifier_of(name, ARCHIVE_ENDING), record);
    record.install = product_state::AVAILABLE;
  }
  return true;
}

void load_installed_products(product_table& table) {
  const std::string directory(r[INSTALLED_PRODUCTS_DIRECTORY]);
  auto slot = static_cast<std::size_t>(get_next_free_product(table));
  for (const std::string& name : get_files(directory, "*.descr")) {
    if (slot == table.size()) {
      report_full_table();
      return;
    }
    product& record = table[slot++];
    read_installed_product(directory, identifier_of(name, DESCRIPTION_ENDING), record);
    record.path = current_directory();
  }
}

}  // namespace

void load_catalogue(product_table& table) {
  if (load_archives(table)) load_installed_products(table);
}

}  // namespace morvane
