// Leaving because something cannot be had that the run needs.
#ifndef MORVANE_CONSOLE_LEAVE_WITHOUT_H
#define MORVANE_CONSOLE_LEAVE_WITHOUT_H

#include <string_view>

namespace morvane {

// Tells the operator that the file `name` cannot be opened, and ends the program.
[[noreturn]] void leave_without_file(std::string_view name);

// Says on standard error that the current directory cannot be obtained, and ends the program.
[[noreturn]] void leave_without_current_directory();

}  // namespace morvane

#endif  // MORVANE_CONSOLE_LEAVE_WITHOUT_H
