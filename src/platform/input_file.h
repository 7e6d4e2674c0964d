// A file that is read once, from start to end.
#ifndef MORVANE_PLATFORM_INPUT_FILE_H
#define MORVANE_PLATFORM_INPUT_FILE_H

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/file.h"

namespace morvane {

// A place in a file as people count: from 1 on, columns in bytes.
struct place_in_file {
  std::size_t line = 1;
  std::size_t column = 1;
};

// Reads in blocks. An error ends the file for good: what was read before it counts.
class input_file {
 public:
  static constexpr int END = -1;

  // Opens the file `path` (see `open_for_reading`).
  explicit input_file(const std::string& path);

  // Goes on with an open file from where it stands.
  explicit input_file(descriptor file) : file_(std::move(file)) {}

  // Reads `content`, as if it stood in a file; no file is open.
  static input_file holding(std::string_view content);

  bool is_open() const { return file_.is_open(); }

  // Returns why the file could not be opened, or why reading it ended early, as `errno` tells it; 0
  // where nothing failed so far.
  int error() const { return error_; }

  // Returns the next byte (0 to 255) without taking it, or END.
  int peek() {
    if (next_ == end_ && !read_block()) return END;
    return static_cast<unsigned char>(*next_);
  }

  // Returns the next byte and takes it, or END.
  int get() {
    const int c = peek();
    if (c != END) ++next_;
    if (c == '\n') begin_line();
    return c;
  }

  // Returns the place of the next byte.
  place_in_file place() const { return {line_, offset() - line_start_ + 1}; }

  // Returns how many bytes are to come, by the size of the file when it was opened; 0 where that
  // tells nothing.
  std::size_t to_come() const { return size_ - std::min(size_, offset()); }

  // Takes the bytes up to the next that is not `accepted` and appends them to `taken`. A newline
  // must not be accepted.
  template <typename Predicate>
  void read_while(Predicate accepted, std::string& taken) {
    while (peek() != END) {
      const char* end = end_of_run(accepted);
      taken.append(next_, static_cast<std::size_t>(end - next_));
      next_ = end;
      if (end != end_) return;
    }
  }

  // As `read_while`, dropping what it takes.
  template <typename Predicate>
  void skip_while(Predicate accepted) {
    while (peek() != END) {
      next_ = end_of_run(accepted);
      if (next_ != end_) return;
    }
  }

  // Takes the bytes up to the next white space and appends them to `word`.
  void read_word(std::string& word);

  // Takes the rest of the line, its newline included, but at most `limit` bytes, and appends it to
  // `line`.
  void read_line(std::size_t limit, std::string& line);

  // As `read_line`, dropping what it takes.
  void skip_line(std::size_t limit);

 private:
  input_file() = default;

  bool read_block();

  // Returns the first byte of the block that is not `accepted`, or its end.
  template <typename Predicate>
  const char* end_of_run(Predicate accepted) const {
    const auto refused = [&](char c) { return !accepted(static_cast<unsigned char>(c)); };
    return std::find_if(next_, end_, refused);
  }

  // Returns the number of bytes that were taken.
  std::size_t offset() const {
    return before_block_ + static_cast<std::size_t>(next_ - block_.get());
  }

  void begin_line() {
    ++line_;
    line_start_ = offset();
  }

  descriptor file_;
  int error_ = 0;
  bool ended_ = false;
  std::size_t size_ = 0;  // when the file was opened
  std::unique_ptr<char[]> block_;
  const char* next_ = nullptr;
  const char* end_ = next_;
  std::size_t before_block_ = 0;  // bytes of the file before the block
  std::size_t line_ = 1;          // of the next byte
  std::size_t line_start_ = 0;    // bytes of the file before that line
};

}  // namespace morvane

#endif  // MORVANE_PLATFORM_INPUT_FILE_H
