#include "output/settings_file.h"

#include "catalogue/product_files.h"
#include "host/operating_system.h"
#include "output/generated_file.h"
#include "platform/diagnostic.h"
#include "text/format.h"
#include "version/version.h"

namespace morvane {

namespace {

std::string product_lines(const product& record) {
  std::string lines;
  lines += fill("PRODUCT_NAME = %s\n", {product_name(record)});
  lines += fill("PRODUCT_PATH = %s\n", {record.path});
  lines += fill("PRODUCT_OWNER = %s\n", {record.owner});
  lines += fill("PRODUCT_GROUP = %s\n", {record.group});
  lines += fill("PRODUCT_ACCESS = %d\n", {int{record.other_access}});
  lines += fill("PRODUCT_VERSION = %s\n", {version_numbers(record.release)});
  return lines;
}

std::string supplier_lines(std::string_view category, const product& supplier) {
  std::string lines;
  lines += fill("%s_NAME = %s\n", {category, product_name(supplier)});
  lines += fill("%s_PATH = %s\n", {category, supplier.path});
  lines += fill("%s_TYPE = %s\n", {category, supplier.type});
  lines += fill("%s_VERSION = %s\n", {category, version_numbers(supplier.release)});
  return lines;
}

// Returns the lines of the suppliers of all resolved targets; a dependency without a supplier is
// reported on standard error, in a line that ends without a newline.
std::string dependency_lines(const product& record) {
  std::string lines;
  for (std::size_t t = 0; t < TARGETS; ++t) {
    const target_dep* target = resolved_target(record, t);
    if (target == nullptr) continue;
    for (const auto& category : target->category_dep) {
      if (category == nullptr) continue;
      const product* supplier = category->product;
      // One that was given up after this product was settled is merely available again.
      if (supplier != nullptr && supplier->install >= product_state::CONFIGURED) {
        lines += supplier_lines(category->category, *supplier);
      } else {
        diagnose(
            fill("%s : product pointer for dependency missing for category %s while "
                 "installing %s",
                 {PROGRAM_NAME, category->category, record.name}));
      }
    }
  }
  return lines;
}

}  // namespace

void write_dat_file(const product& record) {
  if (record.descr_avail == NO_DESCRIPTION) return;
  const std::string file_name = fill("%s%s", {record.id, SETTINGS_ENDING});
  const bool written = write_generated_file(file_name, earlier_file::STAYS, [&] {
    std::string content = generated_head();
    content += fill("HOST_OS = %s\n", {whichOS()});
    content += product_lines(record);
    content += dependency_lines(record);
    return content;
  });
  if (!written) {
    diagnose_warning(fill("'%s' could not be written in full", {file_name}));
  }
}

}  // namespace morvane
