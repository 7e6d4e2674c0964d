// A generated file: opened first, composed, then written at once.
#ifndef MORVANE_OUTPUT_GENERATED_FILE_H
#define MORVANE_OUTPUT_GENERATED_FILE_H

#include <string>

#include "platform/effects.h"

namespace morvane {

// Writes what `compose` returns into the file `name` in the current directory, once that is open
// (see `effects::write_file`). A file that cannot be opened ends the program. Returns whether it
// was written in full.
bool write_generated_file(const std::string& name, earlier_file earlier,
                          const composition& compose);

// Returns the head that every generated file starts with.
std::string generated_head();

}  // namespace morvane

#endif  // MORVANE_OUTPUT_GENERATED_FILE_H
