#include "text/places.h"

#include <algorithm>

namespace morvane {

std::string fill_places(std::string_view text, const places& values) {
  std::string result;
  while (!text.empty()) {
    const std::size_t open = std::min(text.find('{'), text.size());
    result += text.substr(0, open);
    text.remove_prefix(open);
    if (text.empty()) break;

    const std::size_t close = text.find('}');
    const std::string_view name =
        close == std::string_view::npos ? std::string_view() : text.substr(1, close - 1);
    const auto found = std::find_if(values.begin(), values.end(),
                                    [&](const place& candidate) { return candidate.name == name; });
    if (found == values.end()) {
      result += '{';
      text.remove_prefix(1);
    } else {
      result += found->value;
      text.remove_prefix(close + 1);
    }
  }
  return result;
}

}  // namespace morvane
