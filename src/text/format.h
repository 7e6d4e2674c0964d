// The one formatter of the program: fills formats that may come from anywhere, safely.
#ifndef MORVANE_TEXT_FORMAT_H
#define MORVANE_TEXT_FORMAT_H

#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
  argument(std::same_as<std::size_t> auto number)
      : number_(std::to_string(number)), text_(number_) {}
  argument(const argument&) = delete;
  argument& operator=(const argument&) = delete;

  std::string_view value() const { return text_; }

 private:
  std::string number_;
  std::string_view text_;
};

// A place in a format: a `%`, flags (`- + blank # 0`), a width, a precision (4095 at most each) and
// one of `d i u x X o c s`, or a `%`, which takes no argument and prints a `%`.
struct conversion {
  std::size_t position = 0;  // of its first `%`
  std::size_t length = 0;    // up to its letter, which is included
  char letter = '\0';
  bool left = false;  // the flag `-`; no other has an effect
  std::size_t width = 0;
  std::size_t precision = std::string_view::npos;

  bool takes_argument() const { return letter != '%'; }
  bool operator==(const conversion&) const = default;
};

// Returns the conversions of `format` in order. Any other `%` stands as it is, and what follows it
// is read on as text.
std::vector<conversion> conversions(std::string_view format);

// Returns `format` with its conversions filled by `arguments` in order. Every argument is a text,
// so that all conversions but `%c`, which takes the first byte, do what `%s` does. A conversion
// without an argument is empty text, padded to its width; surplus arguments are ignored.
std::string fill(std::string_view format, std::initializer_list<argument> arguments);

}  // namespace morvane

#endif  // MORVANE_TEXT_FORMAT_H
