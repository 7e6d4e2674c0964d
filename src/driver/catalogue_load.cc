#include "driver/catalogue_load.h"

#include <optional>
#include <string>
#include <string_view>

#include "catalogue/description_parser.h"
#include "catalogue/product_files.h"
#include "catalogue/rescan.h"
#include "console/leave.h"
#include "console/leave_without.h"
#include "messages/table.h"
#include "platform/directory.h"

namespace morvane {

namespace {

// Ends the program where there are files that cannot be listed: it would offer less than there is.
identifiers listed(const std::optional<identifiers>& found) {
  if (!found) quit();
  return *found;
}

// Reads the product of an archive into the free slot `record`. Where its description cannot be read
// it is not offered and the slot stays free: without it, an installation would hand on files of the
// whole directory. Returns whether it is offered.
bool load_archive(std::string_view identifier, product& record) {
  if (read_product(".", identifier, record) == read_outcome::IMPOSSIBLE) {
    record = product();
    return false;
  }
  record.install = product_state::AVAILABLE;
  return true;
}

// Returns false, after a report, where the table is full.
bool load_archives(product_table& table) {
  std::size_t slot = 0;
  for (const std::string& identifier : listed(archives_in("."))) {
    if (slot == table.size()) {
      report_full_table();
      return false;
    }
    if (load_archive(identifier, table[slot])) ++slot;
  }
  return true;
}

void load_installed_products(product_table& table) {
  const std::string_view directory = r[INSTALLED_PRODUCTS_DIRECTORY];
  std::size_t slot = get_next_free_product(table);
  for (const std::string& identifier : listed(descriptions_in(directory))) {
    if (slot == table.size()) {
      report_full_table();
      return;
    }
    product& record = table[slot++];
    read_installed_product(directory, identifier, record);
    // A description only proposes a path; the product lies here.
    const std::optional<std::string> here = get_pwd();
    if (!here) leave_without_current_directory();
    record.path = *here;
  }
}

}  // namespace

void load_catalogue(product_table& table) {
  // Where archives found no place nothing else does, and that was reported already.
  if (load_archives(table)) load_installed_products(table);
}

}  // namespace morvane
