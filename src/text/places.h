// Text with named places, such as "{id}-tar: {id}.tar", and lines that depend on conditions.
#ifndef MORVANE_TEXT_PLACES_H
#define MORVANE_TEXT_PLACES_H

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

// A name is not empty, so that "{}" is always text.
struct place {
  std::string_view name;
  std::string value;
};

struct condition {
  std::string_view name;
  bool holds;
};

using places = std::vector<place>;
using conditions = std::vector<condition>;

// Returns `text` with every "{NAME}" whose name is in `values` replaced by its value. A line that
// begins with "{NAME}", of a name in `held`, stands only where that condition holds, and without
// this mark; with "{!NAME}", only where it does not. Several marks in a row must all be met.
// Anything else in braces stands as it is, and what was inserted is not looked at again.
std::string fill_places(std::string_view text, const places& values, const conditions& held = {});

}  // namespace morvane

#endif  // MORVANE_TEXT_PLACES_H
