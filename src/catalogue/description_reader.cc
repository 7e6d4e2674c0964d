#include "catalogue/description_reader.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "console/message_format.h"
#include "platform/diagnostic.h"
#include "platform/file.h"
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

void warn_if_too_long(std::size_t length) {
  if (length < LINE_LIMIT) return;
  diagnose(fill("%s : warning : read line to long (max=%d)\n", {PROGRAM_NAME, int{LONGEST_VALUE}}));
}

// Reads a quoted value behind its opening quote. The rest of its line is dropped.
void read_quoted(description_stream& stream, std::string& value) {
  stream.read_line(LINE_LIMIT, value);
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
void read_word(description_stream& stream, std::string& value, std::string& comment) {
  int c;
  while ((c = stream.peek()) != description_stream::END && !is_white_space(c)) {
    value += static_cast<char>(stream.get());
  }
  warn_if_too_long(value.size());
  value.resize(until_nul(value).size());
  stream.skip_blanks();
  if (stream.get() != '#') return;
  comment = "#";
  stream.read_line(LINE_LIMIT, comment);
}

}  // namespace

description_stream::description_stream(const std::string& path)
    : descriptor_(open_for_reading(path)) {}

description_stream::~description_stream() {
  if (is_open()) close(descriptor_);
}

bool description_stream::read_block() {
  ssize_t count;
  do {
    count = read(descriptor_, block_.data(), block_.size());
  } while (count < 0 && errno == EINTR);
  next_ = block_.data();
  end_ = next_ + std::max<ssize_t>(count, 0);
  return next_ != end_;
}

void description_stream::read_line(std::size_t limit, std::string& line) {
  while (limit > 0 && peek() != END) {
    const std::size_t reach = std::min(limit, static_cast<std::size_t>(end_ - next_));
    const void* newline = std::memchr(next_, '\n', reach);
    const char* taken = newline == nullptr ? next_ + reach : static_cast<const char*>(newline) + 1;
    line.append(next_, taken);
    limit -= static_cast<std::size_t>(taken - next_);
    next_ = taken;
    if (newline != nullptr) return;
  }
}

void description_stream::skip_line(std::size_t limit) {
  std::string dropped;
  read_line(limit, dropped);
}

void description_stream::skip_blanks() {
  while (is_blank(peek())) get();
}

bool is_white_space(int c) {
  return c == '\n' || is_blank(c);
}

void getvar(description_stream& stream, std::string& value, std::string& comment) {
  value.clear();
  comment.clear();
  stream.skip_blanks();
  if (stream.get() != '=') return;
  stream.skip_blanks();
  switch (stream.peek()) {
    case '\n':
    case description_stream::END:
      stream.get();
      return;
    case '#':
      stream.read_line(LINE_LIMIT, comment);
      return;
    case '"':
      stream.get();
      read_quoted(stream, value);
      return;
    default:
      read_word(stream, value, comment);
  }
}

}  // namespace morvane
