// Which version of a product is installed, and whether it satisfies a requirement.
#ifndef MORVANE_DEPEND_INSTALLED_VERSION_H
#define MORVANE_DEPEND_INSTALLED_VERSION_H

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "catalogue/product.h"
#include "catalogue/release.h"

namespace morvane {

// The outcome of `check_version`.
enum class version_check {
  OTHER_TYPE = -3,
  OTHER_CATEGORY = -2,
  SATISFIED = 0,  // also where there is nothing to compare
  UNKNOWN = 1,    // satisfied if every unknown number is as required
  TOO_OLD = 2,
};

// Returns the version of the product of that category and type installed in `path`: that of
// `record` where it is a described product of the table, else the highest among the descriptions in
// `path`, else what the fallback for two known categories says. Numbers that nothing tells are -1.
// An absent type matches every type. Fallbacks may ask the operator.
release get_version(const product* record, std::string_view path, std::string_view category,
                    std::optional<std::string_view> type);

// Compares the table product `record` (or null) with a requirement.
version_check check_version(const product* record, std::optional<std::string_view> category,
                            std::optional<std::string_view> type, const release& required);

// Returns which of `files` a product installed in `path` does not have. An absolute name only
// requires that `path` exists.
std::vector<std::string_view> missing_files(std::string_view path,
                                            std::span<const std::string_view> files);

}  // namespace morvane

#endif  // MORVANE_DEPEND_INSTALLED_VERSION_H
