// How well a product matches as the one that a patch builds on.
#ifndef MORVANE_DEPEND_PATCH_MATCH_H
#define MORVANE_DEPEND_PATCH_MATCH_H

#include <array>
#include <optional>

#include "catalogue/product.h"

namespace morvane {

// How well a product matches as the supplier of another's original, best first.
enum class match_level {
  NAMES_AND_KIND,  // name, full name, category and type
  NAME_AND_KIND,   // name, category and type
  NAMES,           // name and full name
  KIND,            // category and type
  IDENTIFIER,
  NAME,
};

// All of them, in their order.
inline constexpr std::array MATCH_LEVELS = {match_level::NAMES_AND_KIND, match_level::NAME_AND_KIND,
                                            match_level::NAMES,          match_level::KIND,
                                            match_level::IDENTIFIER,     match_level::NAME};

// Returns the best level at which `candidate` matches `record` at patch level `patch`, if any.
// `record` itself is a candidate like any other.
std::optional<match_level> match_patch(const product& record, const product& candidate, int patch);

// Tells whether a product that matches so well is taken without a question.
bool is_taken_silently(match_level level);

}  // namespace morvane

#endif  // MORVANE_DEPEND_PATCH_MATCH_H
