// The one way to standard error.
#ifndef MORVANE_PLATFORM_DIAGNOSTIC_H
#define MORVANE_PLATFORM_DIAGNOSTIC_H

#include <string_view>

namespace morvane {

// Writes `text` to standard error as it is given, after everything that was printed before.
void diagnose(std::string_view text);

// The same as a line under the program's name: an oddity, or something that failed.
void diagnose_warning(std::string_view text);
void diagnose_error(std::string_view text);

// Tells on standard error that memory is exhausted. Needs no memory itself.
void diagnose_exhausted_memory();

}  // namespace morvane

#endif  // MORVANE_PLATFORM_DIAGNOSTIC_H
