// Writing a receipt as a text.
#ifndef MORVANE_RECEIPT_RECEIPT_WRITER_H
#define MORVANE_RECEIPT_RECEIPT_WRITER_H

#include <string>

#include "receipt/receipt.h"

namespace morvane {

// Returns the content of the file that holds the receipt.
std::string receipt_text(const receipt& written);

}  // namespace morvane

#endif  // MORVANE_RECEIPT_RECEIPT_WRITER_H
