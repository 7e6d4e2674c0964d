#include "catalogue/description_reader.h"

#include <cstring>

#include "console/message_format.h"
#include "platform/diagnostic.h"
#include "platform/text.h"
#include "version/version.h"

namespace morvane {

namespace {

// A line of a quoted value or comment is read up to this length; a value that reaches it is told
// about, and the rest of the line is read as further entries.
constexpr int LONGEST_VALUE = 1024;
constexpr std::size_t LINE_LIMIT = LONGEST_VALUE + 1;

bool is_blank(int c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
}

// Takes blanks, tabs and the like up to the next newline or other character.
void skip_blanks(input_file& file) {
  while (is_blank(file.peek())) file.get();
}

void warn_if_too_long(std::size_t length) {
  if (length < LINE_LIMIT) return;
  diagnose(fill("%s : warning : read line to long (max=%d)\n", {PROGRAM_NAME, int{LONGEST_VALUE}}));
}

// Reads a quoted value behind its opening quote. The rest of its line is dropped.
void read_quoted(input_file& file, std::string& value) {
  file.read_line(LINE_LIMIT, value);
  if (value.size() >= LINE_LIMIT) {
    warn_if_too_long(value.size());
    value.resize(until_nul(value).size());
    return;
  }
  const std::size_t end = std::strcspn(value.c_str(), "\"\r\n\v\f");
  const bool closed = value[end] != '\0';
  value.resize(end);
  if (!closed) diagnose(fill("%s : warning : read line contains only one '\"'\n", {PROGRAM_NAME}));
}

// Reads a value without quotes and the comment behind it.
void read_word(input_file& file, std::string& value, std::string& comment) {
  int c;
  while ((c = file.peek()) != input_file::END && !is_white_space(c)) {
    value += static_cast<char>(file.get());
  }
  warn_if_too_long(value.size());
  value.resize(until_nul(value).size());
  skip_blanks(file);
  if (file.get() != '#') return;
  comment += '#';
  file.read_line(LINE_LIMIT, comment);
}

}  // namespace

bool is_white_space(int c) {
  return c == '\n' || is_blank(c);
}

void getvar(input_file& file, std::string& value, std::string& comment) {
  value.clear();
  comment.clear();
  skip_blanks(file);
  if (file.get() != '=') return;
  skip_blanks(file);
  switch (file.peek()) {
    case '\n':
    case input_file::END:
      file.get();
      return;
    case '#':
      file.read_line(LINE_LIMIT, comment);
      return;
    case '"':
      file.get();
      read_quoted(file, value);
      return;
    default:
      read_word(file, value, comment);
  }
}

}  // namespace morvane
