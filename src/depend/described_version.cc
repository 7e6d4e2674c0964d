#include "depend/described_version.h"

#include <algorithm>
#include <string>

#include "catalogue/description_parser.h"
#include "catalogue/product_files.h"

namespace morvane {

release described_version(const product* record, std::string_view path, std::string_view category,
                          std::optional<std::string_view> type) {
  // A record without an identifier was made for a directory, not read from a description.
  if (record != nullptr && on_host_after_run(*record) && !record->id.empty()) {
    return record->release;
  }
  release highest = UNKNOWN_RELEASE;
  const std::string descriptions = installed_products_directory(path);
  // What cannot be listed was reported, and counts as not described.
  for (const std::string& identifier : descriptions_in(descriptions).value_or(identifiers())) {
    product described;
    read_product(descriptions, identifier, described);
    if (described.category != category || (type && described.type != *type)) continue;
    highest = std::max(highest, described.release);
  }
  return highest;
}

}  // namespace morvane
