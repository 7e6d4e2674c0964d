#include "lint/message_file.h"

#include "text/number.h"
#include "text/text.h"

namespace morvane {

namespace {

constexpr std::size_t MOST_LINES = 10'000;
constexpr std::size_t MOST_BYTES_OF_A_LINE = 4096;

}  // namespace

int number_of_line(std::string_view line) {
  const std::string_view read = until_nul(line);
  if (read.size() < 4) return 0;
  const int number = number_or_zero(read);
  return number >= 1 && number < MESSAGE_COUNT ? number : 0;
}

std::optional<message_file> read_message_file(const std::string& path) {
  message_file read;
  input_file file(path);
  if (!file.is_open()) return std::nullopt;
  while (file.peek() != input_file::END && read.lines.size() < MOST_LINES) {
    message_line& taken = read.lines.emplace_back();
    taken.line = file.place().line;
    file.read_line(MOST_BYTES_OF_A_LINE, taken.written);
    if (taken.written.ends_with('\n')) taken.written.pop_back();
    const int number = number_of_line(taken.written);
    if (number != 0) read.numbers[number].push_back(taken.line);
  }
  if (file.error() != 0) return std::nullopt;
  input_file again(path);
  read_messages(again, *read.table);
  return read;
}

std::string shown_number(int number) {
  const std::string digits = std::to_string(number);
  return std::string(3 - digits.size(), '0') + digits;
}

}  // namespace morvane
