#include "answer_file/escaping.h"

#include <cstddef>

namespace morvane {

namespace {

constexpr std::string_view HEX_DIGITS = "0123456789ABCDEF";

// "$" begins a variable.
constexpr std::string_view MEANINGFUL = "%$";
constexpr std::string_view MEANINGFUL_IN_WORDS = "%$ []=#";
constexpr std::string_view MEANINGFUL_IN_NAMES = "%$ []=#./";

bool is_control(char c) {
  return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
}

std::string escape_byte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return {'%', HEX_DIGITS[byte / 16U], HEX_DIGITS[byte % 16U]};
}

std::string escape(std::string_view text, std::string_view meaningful) {
  std::string escaped;
  for (const char c : text) {
    if (is_control(c) || meaningful.find(c) != std::string_view::npos) {
      escaped += escape_byte(c);
    } else {
      escaped += c;
    }
  }
  return escaped;
}

}  // namespace

std::string escape_value(std::string_view text) {
  std::string escaped = escape(text, MEANINGFUL);
  if (escaped.starts_with(' ')) escaped.replace(0, 1, escape_byte(' '));
  if (escaped.ends_with(' ')) escaped.replace(escaped.size() - 1, 1, escape_byte(' '));
  return escaped;
}

std::string escape_word(std::string_view text) {
  return escape(text, MEANINGFUL_IN_WORDS);
}

std::string escape_name(std::string_view text) {
  return escape(text, MEANINGFUL_IN_NAMES);
}

std::optional<std::string> unescape(std::string_view written) {
  std::optional<std::string> text = unescape_file_name(written);
  if (text && text->find('\n') != std::string::npos) return std::nullopt;
  return text;
}

std::optional<std::string> unescape_file_name(std::string_view written) {
  std::string text;
  for (std::size_t i = 0; i < written.size(); ++i) {
    if (written[i] != '%') {
      text += written[i];
      continue;
    }
    if (written.size() - i < 3) return std::nullopt;
    const std::size_t high = HEX_DIGITS.find(written[i + 1]);
    const std::size_t low = HEX_DIGITS.find(written[i + 2]);
    if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
    text += static_cast<char>(16 * high + low);
    if (text.back() == '\0') return std::nullopt;
    i += 2;
  }
  return text;
}

}  // namespace morvane
