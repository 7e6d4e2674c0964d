// Text with named places, such as "{id}-tar: {id}.tar".
#ifndef MORVANE_TEXT_PLACES_H
#define MORVANE_TEXT_PLACES_H

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

struct place {
  std::string_view name;
  std::string value;
};

using places = std::vector<place>;

// Returns `text` with every "{NAME}" whose name is in `values` replaced by its value. Anything else
// in braces stands as it is, and what was inserted is not looked at again.
std::string fill_places(std::string_view text, const places& values);

}  // namespace morvane

#endif  // MORVANE_TEXT_PLACES_H
