#include "lint/spelling.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace morvane {

namespace {

constexpr std::size_t FARTHEST = 2;

}  // namespace

char small(char c) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool is_same_but_for_capitals(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, small, small);
}

std::size_t edit_distance(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> distance(a.size() + 1,
                                                 std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        distance[i][j] = i + j;
        continue;
      }
      const std::size_t replaced = a[i - 1] == b[j - 1] ? 0 : 1;
      distance[i][j] = std::min(
          {distance[i - 1][j] + 1, distance[i][j - 1] + 1, distance[i - 1][j - 1] + replaced});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        distance[i][j] = std::min(distance[i][j], distance[i - 2][j - 2] + 1);
      }
    }
  }
  return distance[a.size()][b.size()];
}

std::string_view nearest(std::string_view word, std::span<const std::string_view> words) {
  for (const std::string_view each : words) {
    if (is_same_but_for_capitals(word, each)) return each;
  }
  std::string_view found;
  std::size_t least = std::min(FARTHEST + 1, word.size());
  for (const std::string_view each : words) {
    const std::size_t longer = std::max(word.size(), each.size());
    if (longer - std::min(word.size(), each.size()) > FARTHEST) continue;
    const std::size_t distance = edit_distance(word, each);
    if (distance >= least) continue;
    least = distance;
    found = each;
  }
  return found;
}

}  // namespace morvane
