// The one formatter of the program: fills formats that may come from anywhere, safely.
#ifndef MORVANE_TEXT_FORMAT_H
#define MORVANE_TEXT_FORMAT_H

#include <concepts>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "text/text.h"

namespace morvane {

// What a conversion is filled with: a text, or a number as its decimal text. An absent text is
// empty. Lives as long as the call that it is an argument of.
class argument {
 public:
  argument(std::string_view value) : text_(value) {}
  argument(const char* value) : text_(value) {}
  argument(const std::string& value) : text_(value) {}
  argument(const std::optional<std::string>& value) : text_(value ? *value : std::string_view()) {}
  template <std::size_t N>
  argument(const text<N>& field) : text_(field.view()) {}
  argument(std::same_as<int> auto number) : number_(std::to_string(number)), text_(number_) {}
  argument(const argument&) = delete;
  argument& operator=(const argument&) = delete;

  std::string_view value() const { return text_; }

 private:
  std::string number_;
  std::string_view text_;
};

// Returns `format` with its conversions filled by `arguments` in order. A conversion is a `%`,
// flags (`- + blank # 0`), a width, a precision (4095 at most each) and one of `d i u x X o c s`;
// every argument is a text, so that all but `%c`, which takes the first byte, do what `%s` does,
// and of the flags only
// `-` has an effect. A conversion without an argument is empty text, padded to its width; surplus
// arguments are ignored; a conversion `%` prints a `%`. Any other `%` stands as it is, and what
// follows it is read on as text.
std::string fill(std::string_view format, std::initializer_list<argument> arguments);

}  // namespace morvane

#endif  // MORVANE_TEXT_FORMAT_H
