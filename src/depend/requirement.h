// What a dependency demands of its supplier, and how a product compares with that.
#ifndef MORVANE_DEPEND_REQUIREMENT_H
#define MORVANE_DEPEND_REQUIREMENT_H

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "catalogue/product.h"
#include "catalogue/release.h"
#include "depend/described_version.h"

namespace morvane {

// The texts are views of the dependency.
struct requirement {
  std::string_view category;
  std::optional<std::string_view> type;  // absent: every type, in every version
  release minimum;
  std::vector<std::string_view> files;  // that an installed supplier must have
};

// Returns what is demanded of a product of `category` that is of the type `alternative`, or, where
// there is none (null), of any type.
requirement requirement_of(std::string_view category, const type_dep* alternative);

// The outcome of `check_version`.
enum class version_check {
  OTHER_TYPE = -3,
  OTHER_CATEGORY = -2,
  SATISFIED = 0,  // also where there is nothing to compare
  UNKNOWN = 1,    // satisfied if every unknown number is as required
  TOO_OLD = 2,
};

// Compares the table product `record` (or null) with a requirement; its version is looked up only
// where category and type agree.
version_check check_version(const product* record, std::optional<std::string_view> category,
                            std::optional<std::string_view> type, const release& required,
                            version_source look_up);

// Returns which of `files` a product installed in `path` does not have. An absolute name only
// requires that `path` exists.
std::vector<std::string_view> missing_files(std::string_view path,
                                            std::span<const std::string_view> files);

// The outcome of `examine`. As it stands it says that nothing is wrong.
struct verdict {
  version_check version = version_check::SATISFIED;
  bool version_will_do = true;
  std::vector<std::string_view> missing_files;  // of the requirement

  bool is_met() const { return version_will_do && missing_files.empty(); }
};

// Whether a version that is not fully known will do.
enum class in_doubt { REFUSE, ACCEPT };

// Returns how `candidate` compares with `wanted`. Its version is looked up with `look_up`. Its
// files are looked at only where the version will do, and where they can be there: not those of a
// product that this run installs.
verdict examine(const product& candidate, const requirement& wanted, in_doubt doubt,
                version_source look_up);

}  // namespace morvane

#endif  // MORVANE_DEPEND_REQUIREMENT_H
