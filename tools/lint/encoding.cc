#include "lint/encoding.h"

namespace morvane {

bool is_of_wide_characters(std::string_view text) {
  if (text.starts_with("\xff\xfe") || text.starts_with("\xfe\xff")) return true;
  if (text.size() < 4) return false;
  const auto is_zero = [text](std::size_t i) { return text[i] == '\0'; };
  return is_zero(0) != is_zero(1) && is_zero(0) == is_zero(2) && is_zero(1) == is_zero(3);
}

}  // namespace morvane
