#include "text/words.h"

#include <algorithm>

namespace morvane {

std::vector<std::string_view> split_words(std::string_view value, std::string_view separators) {
  std::vector<std::string_view> words;
  for (;;) {
    const std::size_t start = value.find_first_not_of(separators);
    if (start == std::string_view::npos) return words;
    value.remove_prefix(start);
    const std::size_t length = std::min(value.find_first_of(separators), value.size());
    words.push_back(value.substr(0, length));
    value.remove_prefix(length);
  }
}

}  // namespace morvane
