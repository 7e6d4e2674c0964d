// Which version of a product is installed, and whether it satisfies a requirement.
#ifndef MORVANE_DEPEND_INSTALLED_VERSION_H
#define MORVANE_DEPEND_INSTALLED_VERSION_H

#include <array>
#include <optional>
#include <string_view>

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

enum class file_state { MISSING = 0, PRESENT = 1, NOT_REQUIRED = 2 };

// The outcome of `check_files`: one state an entry, and the number of missing files.
struct file_check {
  std::array<file_state, FILES> states{};
  int missing = 0;
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

// Looks for the files that a product installed in `path` must have. An absolute entry only
// requires that `path` exists.
file_check check_files(std::string_view path, const std::array<long_text, FILES>& files);

}  // namespace morvane

#endif  // MORVANE_DEPEND_INSTALLED_VERSION_H
