// The words that a receipt is written in.
#ifndef MORVANE_RECEIPT_RECEIPT_FORM_H
#define MORVANE_RECEIPT_RECEIPT_FORM_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace morvane {

// The first line of every receipt.
inline constexpr std::string_view RECEIPT_HEAD = "morvane receipt 1";

// In the order of `file_kind`, `before` and `entry_origin`.
inline constexpr std::array<std::string_view, 4> KIND_WORDS = {"file", "directory", "link",
                                                               "other"};
inline constexpr std::array<std::string_view, 4> BEFORE_WORDS = {"new", "empty", "there", "?"};
inline constexpr std::array<std::string_view, 5> ORIGIN_WORDS = {"archive", "configurator",
                                                                 "settings", "part", "perhaps"};

inline constexpr std::uint64_t NANOSECONDS = 1'000'000'000;
inline constexpr std::size_t FRACTION_DIGITS = 9;

}  // namespace morvane

#endif  // MORVANE_RECEIPT_RECEIPT_FORM_H
