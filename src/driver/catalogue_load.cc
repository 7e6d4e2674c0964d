#include "driver/catalogue_load.h"

#include <string>

#include "catalogue/description_parser.h"
#include "catalogue/listing.h"
#include "catalogue/rescan.h"
#include "console/message_format.h"
#include "console/message_table.h"
#include "platform/diagnostic.h"
#include "version/version.h"

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

// Makes the current directory the directory of an installed product, and tells where it does not
// fit: make would work in another one.
void put_current_directory(product& record) {
  const std::string directory = current_directory();
  record.path = directory;
  if (directory.size() <= path_text::LONGEST) return;
  diagnose(fill("%s : warning : directory '%s' is longer than %d bytes and is cut\n",
                {PROGRAM_NAME, directory, static_cast<int>(path_text::LONGEST)}));
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
    put_current_directory(record);
  }
}

}  // namespace

void load_catalogue(product_table& table) {
  if (load_archives(table)) load_installed_products(table);
}

}  // namespace morvane
