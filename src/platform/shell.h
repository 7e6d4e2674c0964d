// The system shell: the program's way to the file system beyond its own files.
#ifndef MORVANE_PLATFORM_SHELL_H
#define MORVANE_PLATFORM_SHELL_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file.h"

namespace morvane {

// Runs `command` through the shell, after everything printed so far has reached the screen.
// Returns whether its exit status was 0. An interrupt that ends the command ends the program, here
// as in the operations below.
bool run_command(const std::string& command);

// Runs `command` through the shell and returns the first line that it prints, without its line
// end, and at most `longest` bytes of it; nothing where it prints nothing or cannot be run.
std::optional<std::string> first_line_of(const std::string& command, std::size_t longest);

// Tells whether `path` names something that exists on the host, links followed; no permission to
// read it is needed. A run asks its effects instead, which may be a rehearsal's.
bool exists(std::string_view path);

// Return the files through which the output of shell commands comes back, named after the process.
// One probe runs at a time, so that one name each suffices.
std::string scratch_file();
std::string second_scratch_file();

// Creates the scratch file `path` anew and empty, for its owner alone, and never through a link:
// the directory is open to everybody. A foreign file of that name is removed. Returns the open
// file, or none where that does not work; standard error then says so. A signal that ends the
// program removes it.
descriptor create_scratch_file(const std::string& path);

// Runs `command`, which writes to `scratch_file()`, and returns what it wrote, up to the first NUL;
// nothing where the command or the reading fails, or where the file at that path is another one by
// then. The scratch file is removed; where memory is exhausted it is left.
std::optional<std::string> output_of(const std::string& command);

}  // namespace morvane

#endif  // MORVANE_PLATFORM_SHELL_H
