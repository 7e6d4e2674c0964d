#include "text/quoting.h"

#include <algorithm>

namespace morvane {

namespace {

// The characters that no shell interprets; a leading "~" is the exception.
constexpr std::string_view PLAIN_CHARACTERS =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_./-+,@~";

// What make or the shell would interpret in a name, besides blanks and control characters. "^" is a
// pipe to the oldest shells.
constexpr std::string_view SPECIAL_CHARACTERS = "'\"\\$;&|<>()*?[]{}!#%:=`^\177";

}  // namespace

std::string quote(std::string_view value) {
  const bool plain = value.find_first_not_of(PLAIN_CHARACTERS) == std::string_view::npos;
  if (plain && !value.starts_with('~')) return std::string(value);
  std::string quoted = "'";
  for (const char c : value) {
    if (c == '\'') {
      // Nothing escapes it within single quotes: they end before it and begin anew behind it.
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

bool holds_special_characters(std::string_view name) {
  return std::ranges::any_of(name, [](char c) {
    const bool control_or_blank = c >= '\1' && c <= ' ';
    return control_or_blank || SPECIAL_CHARACTERS.find(c) != std::string_view::npos;
  });
}

}  // namespace morvane
