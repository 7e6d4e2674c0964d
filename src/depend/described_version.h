// Which version of a product is installed, as far as descriptions tell.
#ifndef MORVANE_DEPEND_DESCRIBED_VERSION_H
#define MORVANE_DEPEND_DESCRIBED_VERSION_H

#include <optional>
#include <string_view>

#include "catalogue/product.h"
#include "catalogue/release.h"

namespace morvane {

// Returns the version of the product of that category and type installed in `path`: that of
// `record` where it is a described product of the table, else the highest among the descriptions in
// `path`, else an unknown one. An absent type matches every type. Asks nobody.
release described_version(const product* record, std::string_view path, std::string_view category,
                          std::optional<std::string_view> type);

// A way to look a version up, such as the one above.
using version_source = release (*)(const product* record, std::string_view path,
                                   std::string_view category, std::optional<std::string_view> type);

}  // namespace morvane

#endif  // MORVANE_DEPEND_DESCRIBED_VERSION_H
