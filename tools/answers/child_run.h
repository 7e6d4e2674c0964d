// The program's stages, here or in a child process, so that one command can run them twice.
#ifndef MORVANE_ANSWERS_CHILD_RUN_H
#define MORVANE_ANSWERS_CHILD_RUN_H

#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include "catalogue/product.h"

namespace morvane {

// Runs the program with `table`, which is empty, and ends the process as the program ends.
[[noreturn]] void run_program(product_table& table);

// A file without a name, for what a child has to say; null where there can be none.
using scratch_stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
scratch_stream open_scratch_stream();

// Returns what was written to it.
std::string content_of(const scratch_stream& stream);

// Where the output of a child goes: descriptors.
struct child_output {
  int screen;
  int errors;
};

// Runs `code`, which does not return, in a child process that nobody can type to. Returns whether
// it ended with status 0. A signal that would end this process ends the child instead.
bool run_in_child(const child_output& output, const std::function<void()>& code);

// Tells whether an operator is there to read what the program pauses for.
bool operator_is_there();

}  // namespace morvane

#endif  // MORVANE_ANSWERS_CHILD_RUN_H
