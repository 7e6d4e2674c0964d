// A generated file: opened first, composed, then written at once.
#ifndef MORVANE_OUTPUT_OUTPUT_FILE_H
#define MORVANE_OUTPUT_OUTPUT_FILE_H

#include <cstdio>
#include <string>
#include <string_view>

namespace morvane {

class output_file {
 public:
  // Creates the file `name` in the current directory, or empties an existing one, which keeps its
  // mode and owner. Where that fails, says so and ends the program.
  explicit output_file(std::string_view name);
  ~output_file();
  output_file(const output_file&) = delete;
  output_file& operator=(const output_file&) = delete;

  // Writes `content` and closes the file. Returns whether all of it was written. Called once.
  bool write(std::string_view content);

 private:
  std::FILE* file_ = nullptr;
};

// Tells the operator that the file `name` cannot be opened, and ends the program.
[[noreturn]] void leave_without_file(std::string_view name);

// Returns the head that every generated file starts with.
std::string generated_head();

}  // namespace morvane

#endif  // MORVANE_OUTPUT_OUTPUT_FILE_H
