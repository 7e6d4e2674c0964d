// Adding the products installed in one directory to the product table.
#ifndef MORVANE_CATALOGUE_RESCAN_H
#define MORVANE_CATALOGUE_RESCAN_H

#include <cstddef>
#include <string_view>

#include "catalogue/product.h"

namespace morvane {

// The slots that a scan filled: `count` slots from slot `first` on.
struct scanned_slots {
  std::size_t first = 0;
  std::size_t count = 0;
};

// Reports on standard error that the product table is full.
void report_full_table();

// Reads the description of `identifier` in `descriptions` into slot `record` as an installed
// product. The caller knows its path.
void read_installed_product(std::string_view descriptions, std::string_view identifier,
                            product& record);

// Adds an INSTALLED record for every product described in the installed-products directory of
// `path`, from the first free slot of `table` on, unless that was done before. The mark for that is
// a record with this path that is SCANNED; a record whose path was chosen in this run becomes such
// a mark. A full table is reported on standard error; the records added until then stay.
scanned_slots read_all_descr_files(product_table& table, std::string_view path);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_RESCAN_H
