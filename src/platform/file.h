// Opening files that others may have put in the place of those the program expects.
#ifndef MORVANE_PLATFORM_FILE_H
#define MORVANE_PLATFORM_FILE_H

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace morvane {

// An open file, by its descriptor, that is closed with the object; or none.
class descriptor {
 public:
  descriptor() = default;
  explicit descriptor(int number) : number_(number) {}
  descriptor(descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  descriptor& operator=(descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~descriptor() {
    if (is_open()) close();
  }

  bool is_open() const { return number_ >= 0; }
  int number() const { return number_; }

  // Closes the file; returns whether that worked.
  bool close();

 private:
  int number_ = -1;
};

// Opens `path` for reading. Nothing is waited for: a named pipe without a writer reads as empty. A
// device, which might never end, cannot be opened, but for the null device, which masks a file.
// Where it cannot be opened `errno` tells why.
descriptor open_for_reading(const std::string& path);

// Opens `path` for writing, as it is or, where it is not there, created, which `created` tells.
// Nothing is waited for: a named pipe without a reader cannot be opened.
descriptor open_for_writing(const std::string& path, bool& created);

// Reads up to `size` bytes into `block`, again where a signal interrupts it. Returns their number,
// 0 at the end, -1 where it fails, as `errno` then tells.
ssize_t read_uninterrupted(const descriptor& file, char* block, std::size_t size);

// Returns what is left to read of `file`, or nothing where that fails, as `errno` tells: EFBIG
// where it is more than `most` bytes, however many others add to it meanwhile.
std::optional<std::string> read_rest(const descriptor& file, std::size_t most = std::string::npos);

// Puts `content` in the place of all that `file`, open for writing, held. Returns whether all of it
// was written.
bool replace_content(const descriptor& file, std::string_view content);

// Tells whether both paths name the same file or directory, links followed.
bool is_same_file(const std::string& a, const std::string& b);

// Tells whether `path` itself, not what a link there leads to, is the open `file`.
bool is_file_at(const std::string& path, const descriptor& file);

}  // namespace morvane

#endif  // MORVANE_PLATFORM_FILE_H
