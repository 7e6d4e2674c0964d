#include "text/format.h"

#include <algorithm>
#include <cstddef>

#include "text/number.h"

namespace morvane {

namespace {

constexpr std::string_view FLAGS = "-+ #0";
constexpr std::string_view TEXT_CONVERSIONS = "diuxXos";

struct conversion {
  bool left = false;
  std::size_t width = 0;
  std::size_t precision = std::string_view::npos;
  char type = '\0';
  std::size_t length = 0;  // of the whole conversion, its `%` included
};

// Returns the length of the longest start of `text` made of `characters` only.
std::size_t length_of(std::string_view text, std::string_view characters) {
  return std::min(text.find_first_not_of(characters), text.size());
}

// A message may ask for any width; what is beyond this would only exhaust the memory.
constexpr int LARGEST_NUMBER = 4095;

// Takes the digits off the start of `text` and returns their number, 0 where there are none.
std::size_t take_number(std::string_view& text) {
  const std::string_view digits = text.substr(0, length_of(text, DIGITS));
  text.remove_prefix(digits.size());
  return static_cast<std::size_t>(std::min(number_or_zero(digits), LARGEST_NUMBER));
}

// Returns the conversion at the start of `text`, which begins with `%`, or nothing where what
// follows is none.
std::optional<conversion> read_conversion(std::string_view text) {
  conversion result;
  std::string_view rest = text.substr(1);

  const std::size_t flags = length_of(rest, FLAGS);
  result.left = rest.substr(0, flags).find('-') != std::string_view::npos;
  rest.remove_prefix(flags);

  result.width = take_number(rest);
  if (rest.starts_with('.')) {
    rest.remove_prefix(1);
    result.precision = take_number(rest);
  }

  if (rest.empty()) return std::nullopt;
  result.type = rest.front();
  result.length = text.size() - rest.size() + 1;
  const bool known = result.type == 'c' || result.type == '%' ||
                     TEXT_CONVERSIONS.find(result.type) != std::string_view::npos;
  return known ? std::optional(result) : std::nullopt;
}

void append_padded(std::string& result, const conversion& how, std::string_view value) {
  value = value.substr(0, how.type == 'c' ? 1 : how.precision);
  const std::size_t padding = how.width - std::min(how.width, value.size());
  if (!how.left) result.append(padding, ' ');
  result += value;
  if (how.left) result.append(padding, ' ');
}

}  // namespace

std::string fill(std::string_view format, std::initializer_list<argument> arguments) {
  std::string result;
  auto next = arguments.begin();
  while (!format.empty()) {
    const std::size_t plain = std::min(format.find('%'), format.size());
    result += format.substr(0, plain);
    format.remove_prefix(plain);
    if (format.empty()) break;

    const std::optional<conversion> how = read_conversion(format);
    if (!how || how->type == '%') {
      result += '%';
    } else {
      append_padded(result, *how, next == arguments.end() ? "" : (next++)->value());
    }
    format.remove_prefix(how ? how->length : 1);
  }
  return result;
}

}  // namespace morvane
