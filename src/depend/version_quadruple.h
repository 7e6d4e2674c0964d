// A version as four numbers.
#ifndef MORVANE_DEPEND_VERSION_QUADRUPLE_H
#define MORVANE_DEPEND_VERSION_QUADRUPLE_H

#include <compare>

namespace morvane {

inline constexpr int UNKNOWN_NUMBER = -1;

// Compares number by number in this order. A number that is exactly -1 is unknown.
struct version_quadruple {
  int version = UNKNOWN_NUMBER;
  int subversion = UNKNOWN_NUMBER;
  int minorversion = UNKNOWN_NUMBER;
  int patch = UNKNOWN_NUMBER;

  auto operator<=>(const version_quadruple&) const = default;
};

// Returns the version of a product, or the minimum version of a type alternative.
template <typename Versioned>
version_quadruple version_of(const Versioned& record) {
  return {record.version, record.subversion, record.minorversion, record.patch};
}

}  // namespace morvane

#endif  // MORVANE_DEPEND_VERSION_QUADRUPLE_H
