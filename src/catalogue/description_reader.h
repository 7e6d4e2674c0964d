// Reading a description file character by character, and the value of an entry.
#ifndef MORVANE_CATALOGUE_DESCRIPTION_READER_H
#define MORVANE_CATALOGUE_DESCRIPTION_READER_H

#include <array>
#include <cstddef>
#include <string>

namespace morvane {

// A description file that is read from start to end, in blocks.
class description_stream {
 public:
  static constexpr int END = -1;

  // Opens the file `path` for reading.
  explicit description_stream(const std::string& path);
  ~description_stream();
  description_stream(const description_stream&) = delete;
  description_stream& operator=(const description_stream&) = delete;

  bool is_open() const { return descriptor_ >= 0; }

  // Returns the next byte (0 to 255) without taking it, or END at the end or at an error.
  int peek() {
    if (next_ == end_ && !read_block()) return END;
    return static_cast<unsigned char>(*next_);
  }

  // Returns the next byte and takes it, or END.
  int get() {
    const int c = peek();
    if (c != END) ++next_;
    return c;
  }

  // Takes the rest of the line, its newline included, but at most `limit` bytes, and appends it to
  // `line`.
  void read_line(std::size_t limit, std::string& line);

  // As `read_line`, dropping what it takes.
  void skip_line(std::size_t limit);

  // Takes blanks, tabs and the like up to the next newline or other character.
  void skip_blanks();

 private:
  bool read_block();

  int descriptor_;
  std::array<char, 65536> block_;
  const char* next_ = block_.data();
  const char* end_ = block_.data();
};

// Tells whether `c` is white space, the newline included.
bool is_white_space(int c);

// Reads what follows a keyword in `stream`: "=", a value and a comment. The value is a word, or
// quoted text up to the end of the line, or empty; `comment` receives the comment that ends the
// entry, with its "#". Leaves `stream` behind the value, behind its line for quoted values and
// comments. Faults are reported on standard error and do not stop the reading.
void getvar(description_stream& stream, std::string& value, std::string& comment);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_DESCRIPTION_READER_H
