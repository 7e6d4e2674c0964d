// Text in a field of fixed capacity.
#ifndef MORVANE_TEXT_TEXT_H
#define MORVANE_TEXT_TEXT_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace morvane {

// Returns the part of `value` before its first NUL: every text ends there, wherever it comes from.
inline std::string_view until_nul(std::string_view value) {
  return value.substr(0, value.find('\0'));
}

// Holds at most N - 1 bytes and is always terminated. A longer value is cut, a value with a NUL
// ends there. Compares byte for byte.
template <std::size_t N>
class text {
 public:
  static constexpr std::size_t LONGEST = N - 1;

  text() = default;
  text(std::string_view value) { *this = value; }
  text(const char* value) : text(std::string_view(value)) {}

  text& operator=(std::string_view value) {
    value = until_nul(value).substr(0, LONGEST);
    // `value` may be a view of this very field.
    const auto end = std::copy(value.begin(), value.end(), bytes_.begin());
    std::fill(end, bytes_.end(), '\0');
    return *this;
  }

  text& operator=(const char* value) { return *this = std::string_view(value); }

  std::string_view view() const { return until_nul({bytes_.data(), LONGEST}); }
  operator std::string_view() const { return view(); }
  const char* c_str() const { return bytes_.data(); }
  bool empty() const { return bytes_[0] == '\0'; }

  friend bool operator==(const text& a, const text& b) { return a.view() == b.view(); }
  friend bool operator==(const text& a, std::string_view b) { return a.view() == b; }
  friend bool operator==(const text& a, const char* b) { return a.view() == b; }

 private:
  std::array<char, N> bytes_{};
};

}  // namespace morvane

#endif  // MORVANE_TEXT_TEXT_H
