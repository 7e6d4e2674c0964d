// Which version of a product is installed, whatever it takes to know that.
#ifndef MORVANE_DEPEND_INSTALLED_VERSION_H
#define MORVANE_DEPEND_INSTALLED_VERSION_H

#include <optional>
#include <string_view>

#include "catalogue/product.h"
#include "catalogue/release.h"

namespace morvane {

// Returns the described version, else what the fallback for two known categories says. Numbers that
// nothing tells are -1. The fallback for the links tool runs a probe, and may ask the operator.
release get_version(const product* record, std::string_view path, std::string_view category,
                    std::optional<std::string_view> type);

}  // namespace morvane

#endif  // MORVANE_DEPEND_INSTALLED_VERSION_H
