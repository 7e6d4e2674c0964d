// A message file as its checks see it: what the program makes of it, and where it stands.
#ifndef MORVANE_LINT_MESSAGE_FILE_H
#define MORVANE_LINT_MESSAGE_FILE_H

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "messages/table.h"
#include "platform/input_file.h"

namespace morvane {

struct message_line {
  std::size_t line = 0;
  std::string written;  // without its newline
};

struct message_file {
  std::vector<message_line> lines;                  // all, comments too
  std::map<int, std::vector<std::size_t>> numbers;  // with the lines that they stand in
  std::unique_ptr<message_table> table = std::make_unique<message_table>();

  std::string_view text(int number) const { return (*table)[number]; }
  bool has(int number) const { return numbers.contains(number); }

  // Returns the place of a message that the file has.
  place_in_file place(int number) const { return {numbers.at(number).back(), 1}; }
};

// Returns the message file `path`, or nothing where it cannot be read.
std::optional<message_file> read_message_file(const std::string& path);

// Returns the number of the message that a line is read as, or 0.
int number_of_line(std::string_view line);

// Returns a number as it stands in message files: "001".
std::string shown_number(int number);

}  // namespace morvane

#endif  // MORVANE_LINT_MESSAGE_FILE_H
