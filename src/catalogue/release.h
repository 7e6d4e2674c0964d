// The version of a product: four numbers that belong together.
#ifndef MORVANE_CATALOGUE_RELEASE_H
#define MORVANE_CATALOGUE_RELEASE_H

#include <compare>
#include <string>

namespace morvane {

inline constexpr int UNKNOWN_NUMBER = -1;

// Compares number by number in this order. A number that is exactly -1 is unknown.
struct release {
  int version = 0;
  int subversion = 0;
  int minorversion = 0;
  int patch = 0;

  auto operator<=>(const release&) const = default;
};

inline constexpr release UNKNOWN_RELEASE = {UNKNOWN_NUMBER, UNKNOWN_NUMBER, UNKNOWN_NUMBER,
                                            UNKNOWN_NUMBER};

// Returns the numbers, such as "2.1.3, patch 4"; a minor version or patch level that is not above 0
// is left out.
std::string version_numbers(const release& shown);

// Tells whether product summaries call the version unknown; 0.0 counts as unknown there.
bool is_shown_as_unknown(const release& shown);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_RELEASE_H
