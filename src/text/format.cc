#include "text/format.h"

#include <algorithm>

#include "text/number.h"

namespace morvane {

namespace {

constexpr std::string_view FLAGS = "-+ #0";
constexpr std::string_view LETTERS = "diuxXocs%";

// Returns the length of the longest start of `text` made of `characters` only.
std::size_t length_of(std::string_view text, std::string_view characters) {
  return std::min(text.find_first_not_of(characters), text.size());
}

// A message may ask for any width; what is beyond this would only exhaust the memory.
constexpr int LARGEST_NUMBER = 4095;

// Takes the digits off the start of `text` and returns their number, 0 where there are none.
std::size_t take_digits(std::string_view& text) {
  const std::string_view digits = text.substr(0, length_of(text, DIGITS));
  text.remove_prefix(digits.size());
  return static_cast<std::size_t>(std::min(number_or_zero(digits), LARGEST_NUMBER));
}

// Returns the conversion of `format` whose `%` stands at `position`, or nothing where what follows
// it makes none.
std::optional<conversion> read_conversion(std::string_view format, std::size_t position) {
  conversion result{.position = position};
  std::string_view rest = format.substr(position + 1);

  const std::size_t flags = length_of(rest, FLAGS);
  result.left = rest.substr(0, flags).find('-') != std::string_view::npos;
  rest.remove_prefix(flags);

  result.width = take_digits(rest);
  if (rest.starts_with('.')) {
    rest.remove_prefix(1);
    result.precision = take_digits(rest);
  }

  if (rest.empty() || LETTERS.find(rest.front()) == std::string_view::npos) return std::nullopt;
  result.letter = rest.front();
  result.length = format.size() - rest.size() + 1 - position;
  return result;
}

void append_padded(std::string& result, const conversion& how, std::string_view value) {
  value = value.substr(0, how.letter == 'c' ? 1 : how.precision);
  const std::size_t padding = how.width - std::min(how.width, value.size());
  if (!how.left) result.append(padding, ' ');
  result += value;
  if (how.left) result.append(padding, ' ');
}

}  // namespace

std::vector<conversion> conversions(std::string_view format) {
  std::vector<conversion> found;
  std::size_t position = 0;
  while ((position = format.find('%', position)) != std::string_view::npos) {
    const std::optional<conversion> next = read_conversion(format, position);
    if (next) found.push_back(*next);
    position += next ? next->length : 1;
  }
  return found;
}

std::string fill(std::string_view format, std::initializer_list<argument> arguments) {
  std::string result;
  auto next = arguments.begin();
  std::size_t end = 0;  // of what is done
  for (const conversion& each : conversions(format)) {
    result += format.substr(end, each.position - end);
    end = each.position + each.length;
    if (!each.takes_argument()) {
      result += '%';
    } else {
      append_padded(result, each, next == arguments.end() ? "" : (next++)->value());
    }
  }
  return result += format.substr(end);
}

}  // namespace morvane
