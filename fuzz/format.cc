// The safe formatter: the first line of the input is a format, the others are its arguments.
#include "text/format.h"

#include <algorithm>

#include "target.h"

namespace {

using namespace morvane;

constexpr std::size_t LONGEST_PADDING = 4095;

// Tells whether `format` is one text conversion whose every part the C library knows, too.
bool is_plain_conversion(std::string_view format) {
  if (!format.starts_with('%') || format.size() < 2 || !format.ends_with('s')) return false;
  format = format.substr(1, format.size() - 2);
  if (format.starts_with('-')) format.remove_prefix(1);
  const auto skip_digits = [&] {
    // With four, a number could be larger than the formatter's bound.
    format.remove_prefix(std::min({format.find_first_not_of("0123456789"), format.size(), 3UL}));
  };
  if (format.starts_with('0')) return false;  // a flag that means nothing for a text
  skip_digits();
  if (format.starts_with('.')) format.remove_prefix(1);
  skip_digits();
  return format.empty();
}

void compare_with_library(const std::string& format, const std::string& value) {
  std::string expected(LONGEST_PADDING + value.size() + 1, '\0');
  const int length = std::snprintf(expected.data(), expected.size(), format.c_str(), value.c_str());
  expected.resize(static_cast<std::size_t>(length));
  require(fill(format, {value}) == expected, "a text conversion does what printf does");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view rest = as_text(data, size);
  const std::string format(take_line(rest));
  const std::string first(take_line(rest));
  const std::string second(take_line(rest));
  const std::string third(rest);

  const auto percents = static_cast<std::size_t>(std::count(format.begin(), format.end(), '%'));
  for (const std::string& filled :
       {fill(format, {}), fill(format, {first}), fill(format, {first, second}),
        fill(format, {first, second, third})}) {
    require(filled.size() <= format.size() + size + percents * LONGEST_PADDING,
            "nothing is longer than format, arguments and padding");
  }
  if (percents == 0) {
    require(fill(format, {first, second}) == format, "a text without % stands as it is");
  }
  require(fill("%s", {third}) == third, "what is filled in is not read as a format");
  require(fill("%%", {}) == "%", "two % are one");

  std::string doubled;
  for (const char c : format) doubled += c == '%' ? std::string("%%") : std::string(1, c);
  require(fill(doubled, {first}) == format, "doubling each % gives the text itself");

  if (is_plain_conversion(format) && first.find('\0') == std::string::npos) {
    compare_with_library(format, first);
  }
  return 0;
}
