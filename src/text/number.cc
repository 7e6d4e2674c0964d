#include "text/number.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "text/white_space.h"

namespace morvane {

std::optional<int> leading_number(std::string_view value) {
  value.remove_prefix(std::min(value.find_first_not_of(WHITE_SPACE), value.size()));
  const bool negative = value.starts_with('-');
  if (negative || value.starts_with('+')) value.remove_prefix(1);

  constexpr std::int64_t BEYOND_INT = std::int64_t{std::numeric_limits<int>::max()} + 1;
  std::int64_t magnitude = 0;
  std::size_t digits = 0;
  for (; digits < value.size() && value[digits] >= '0' && value[digits] <= '9'; ++digits) {
    // Kept at the bound, so that further digits cannot overflow it.
    magnitude = std::min(magnitude * 10 + (value[digits] - '0'), BEYOND_INT);
  }
  if (digits == 0) return std::nullopt;
  return static_cast<int>(negative ? -magnitude : std::min(magnitude, BEYOND_INT - 1));
}

bool is_digits(std::string_view text) {
  return !text.empty() && text.find_first_not_of(DIGITS) == std::string_view::npos;
}

int number_or_zero(std::string_view value) {
  return leading_number(value).value_or(0);
}

std::optional<int> take_number(std::string_view& list, std::string_view separators) {
  const std::optional<int> number = leading_number(list);
  list.remove_prefix(std::min(list.find_first_of(separators), list.size()));
  list.remove_prefix(std::min(list.find_first_of(DIGITS), list.size()));
  return number;
}

}  // namespace morvane
