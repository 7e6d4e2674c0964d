#include "catalogue/rescan.h"

#include "catalogue/description_parser.h"
#include "catalogue/product_files.h"
#include "platform/diagnostic.h"
#include "text/format.h"
#include "version/version.h"

namespace morvane {

void report_full_table() {
  diagnose(fill("%s: More than %d product entries, array overflow.\n", {PROGRAM_NAME, TABLE_SIZE}));
}

void read_installed_product(std::string_view descriptions, std::string_view identifier,
                            product& record) {
  // One that cannot be read, which was reported, still tells by its name what is installed.
  read_product(descriptions, identifier, record);
  record.install = product_state::INSTALLED;
  record.settled.path = path_state::SCANNED;
}

scanned_slots read_all_descr_files(product_table& table, std::string_view path) {
  scanned_slots slots;
  bool scanned_before = false;
  for (product& record : table) {
    if (is_free(record)) break;
    ++slots.first;
    if (record.path != path) continue;
    if (record.settled.path == path_state::SCANNED) scanned_before = true;
    if (record.settled.path == path_state::CHOSEN) record.settled.path = path_state::SCANNED;
  }
  if (scanned_before) return slots;

  const std::string descriptions = installed_products_directory(path);
  // What cannot be listed was reported, and counts as nothing installed.
  for (const std::string& identifier : descriptions_in(descriptions).value_or(identifiers())) {
    const std::size_t slot = slots.first + slots.count;
    if (slot == TABLE_SIZE) {
      report_full_table();
      break;
    }
    product& record = table[slot];
    read_installed_product(descriptions, identifier, record);
    // A description only proposes a path; this is where the product lies.
    record.path = path;
    ++slots.count;
  }
  return slots;
}

}  // namespace morvane
