#include "catalogue/description_reader.h"

#include <cstring>

#include "text/text.h"
#include "text/white_space.h"

namespace morvane {

namespace {

constexpr std::size_t LINE_LIMIT = LONGEST_VALUE + 1;

// Takes blanks, tabs and the like up to the next newline or other character.
void skip_blanks(input_file& file) {
  file.skip_while([](int c) { return is_blank(c); });
}

// Reads a quoted value behind its opening quote. The rest of its line is dropped.
std::optional<fault_kind> read_quoted(input_file& file, std::string& value) {
  file.read_line(LINE_LIMIT, value);
  if (value.size() >= LINE_LIMIT) {
    value.resize(until_nul(value).size());
    return fault_kind::VALUE_TOO_LONG;
  }
  const std::size_t end = std::strcspn(value.c_str(), "\"\r\n\v\f");
  const bool closed = value[end] != '\0';
  value.resize(end);
  return closed ? std::nullopt : std::optional(fault_kind::QUOTE_NOT_CLOSED);
}

// Reads a value without quotes and the comment behind it.
std::optional<fault_kind> read_word(input_file& file, std::string& value, std::string& comment) {
  file.read_word(value);
  const bool too_long = value.size() >= LINE_LIMIT;
  value.resize(until_nul(value).size());
  skip_blanks(file);
  if (file.get() == '#') {
    comment += '#';
    file.read_line(LINE_LIMIT, comment);
  }
  return too_long ? std::optional(fault_kind::VALUE_TOO_LONG) : std::nullopt;
}

}  // namespace

std::optional<fault_kind> getvar(input_file& file, std::string& value, std::string& comment) {
  value.clear();
  comment.clear();
  skip_blanks(file);
  if (file.get() != '=') return std::nullopt;
  skip_blanks(file);
  switch (file.peek()) {
    case '\n':
    case input_file::END:
      file.get();
      return std::nullopt;
    case '#':
      file.read_line(LINE_LIMIT, comment);
      return std::nullopt;
    case '"':
      file.get();
      return read_quoted(file, value);
    default:
      return read_word(file, value, comment);
  }
}

}  // namespace morvane
