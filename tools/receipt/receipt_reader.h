// Reading a receipt.
#ifndef MORVANE_RECEIPT_RECEIPT_READER_H
#define MORVANE_RECEIPT_RECEIPT_READER_H

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "receipt/receipt.h"

namespace morvane {

inline constexpr std::size_t LONGEST_RECEIPT = 256UL * 1024 * 1024;

struct receipt_fault {
  std::size_t line = 0;
  std::string text;
};

// Reads `text`, the content of a file; accepts what `receipt_text` writes, and nothing else.
std::variant<receipt, receipt_fault> read_receipt(std::string_view text);

}  // namespace morvane

#endif  // MORVANE_RECEIPT_RECEIPT_READER_H
