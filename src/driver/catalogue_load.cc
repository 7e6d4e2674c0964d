#include "driver/catalogue_load.h"

#include <string>

#include "catalogue/description_parser.h"
#include "catalogue/listing.h"
#include "catalogue/rescan.h"
#include "console/leave.h"
#include "console/message_table.h"

namespace morvane {

namespace {

// Ends the program where there are files that cannot be listed: it would offer less than there is.
file_names list_files(std::string_view directory, std::string_view pattern) {
  std::optional<file_names> names = get_files(directory, pattern);
  if (!names) quit();
  return *names;
}

// Reads the product of an archive into the free slot `record`. Where its description cannot be read
// it is not offered and the slot stays free: without it, an installation would hand on files of the
// whole directory. Returns whether it is offered.
bool load_archive(const std::string& name, product& record) {
  if (read_product(".", identifier_of(name, ARCHIVE_ENDING), record) == read_outcome::IMPOSSIBLE) {
    record = product();
    return false;
  }
  record.install = product_state::AVAILABLE;
  return true;
}

// Returns false, after a report, where the table is full.
bool load_archives(product_table& table) {
  std::size_t slot = 0;
  for (const std::string& name : list_files(".", "*.tar")) {
    if (slot == table.size()) {
      report_full_table();
      return false;
    }
    if (load_archive(name, table[slot])) ++slot;
  }
  return true;
}

void load_installed_products(product_table& table) {
  const std::string directory(r[INSTALLED_PRODUCTS_DIRECTORY]);
  auto slot = static_cast<std::size_t>(get_next_free_product(table));
  for (const std::string& name : list_files(directory, "*.descr")) {
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
