// Running code that talks to the terminal or ends the program, and seeing what came of it.
#ifndef MORVANE_TESTS_SUPPORT_CHILD_H
#define MORVANE_TESTS_SUPPORT_CHILD_H

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace morvane {

// A directory of its own below /tmp, which is the current directory while the object lives and is
// removed with it.
class scratch_directory {
 public:
  scratch_directory();
  ~scratch_directory();
  scratch_directory(const scratch_directory&) = delete;
  scratch_directory& operator=(const scratch_directory&) = delete;

  std::string path() const { return path_.string(); }

 private:
  std::filesystem::path before_;
  std::filesystem::path path_;
};

// Creates the file `path` with `content`, and the directories above it.
void write_file(const std::filesystem::path& path, std::string_view content);

// Returns the content of the file `path`; fails the test where it cannot be read.
std::string read_file(const std::filesystem::path& path);

struct outcome {
  std::string out;        // standard output
  std::string err;        // standard error
  int status = -1;        // exit status; -1 where a signal ended the child
  bool returned = false;  // whether the code came back, instead of ending the program
  std::string result;     // what the code returned

  // Everything that was written, standard output first.
  std::string written() const { return out + err; }
};

// Runs `code` in a child process with `input` as its standard input. The test's own data are not
// changed by it: what `code` finds out it returns as a text.
outcome in_child(std::string_view input, const std::function<std::string()>& code);

// The same with standard error going to `out`, too, in the order in which all was written.
outcome in_child_in_order(std::string_view input, const std::function<std::string()>& code);

// Returns the signal that ends a child which runs `code`, or 0 where none does. Signals that end a
// program have their default action in it, even where the tests run in the background and ignore
// some of them.
int signal_ending(const std::function<void()>& code);

}  // namespace morvane

#endif  // MORVANE_TESTS_SUPPORT_CHILD_H
