// The message table: every text that the operator reads, by number.
#ifndef MORVANE_MESSAGES_TABLE_H
#define MORVANE_MESSAGES_TABLE_H

#include <array>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

#include "messages/numbers.h"
#include "platform/input_file.h"
#include "text/format.h"

namespace morvane {

inline constexpr int MESSAGE_COUNT = 500;
inline constexpr std::size_t MESSAGE_SIZE = 150;

// 500 slots of 150 bytes that lie end to end in one block, with a spare byte behind the last.
// A text of 150 bytes has its end mark in the first byte of the following slot: it empties that
// message, or, where that message is stored later, reads on through it. Writers of message files
// keep texts at 149 bytes.
class message_table {
 public:
  // Returns the text from slot `number` (0 to 499) to the next NUL. It is followed by that NUL.
  std::string_view operator[](int number) const;

  // Puts `text` (at most 150 bytes, no NUL) and its end mark into the block at slot `number`.
  void store(int number, std::string_view text);

 private:
  std::array<char, MESSAGE_COUNT * MESSAGE_SIZE + 1> block_{};
};

// The table of the run, filled once by `read_resource` and only read afterwards.
extern message_table r;

// Returns the text of `format` filled with `texts`, in order. A number of texts that is not that of
// the list of messages does not compile.
template <int COUNT, std::convertible_to<std::string_view>... TEXTS>
std::string fill(message_format<COUNT> format,
                 const TEXTS&... texts) requires(sizeof...(TEXTS) == COUNT) {
  return fill(r[format.number], {std::string_view(texts)...});
}

// Whether `r` has been read completely.
extern bool rscok;

// The message file, in the current directory.
inline constexpr const char* RESOURCE_FILE = "./morvane.rsc";

// Fills `r` from the message file and sets `rscok`. Returns false where it cannot be opened.
bool read_resource();

// Fills `table` from the message file `file`: first every slot with a filler that names its number,
// then the slots that the file defines. A line is a number at its start and a text from column
// 5 on; every other line is skipped. An error ends the file: what was read before it counts, an
// unfinished line included.
void read_messages(input_file& file, message_table& table);

}  // namespace morvane

#endif  // MORVANE_MESSAGES_TABLE_H
