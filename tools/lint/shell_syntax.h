// Whether the shell can read a command.
#ifndef MORVANE_LINT_SHELL_SYNTAX_H
#define MORVANE_LINT_SHELL_SYNTAX_H

#include <string_view>

namespace morvane {

// Tells whether `command`, of at most some 500 bytes, is one that sh can read. It is not run. Where
// no shell can be started, any is.
bool is_shell_syntax(std::string_view command);

}  // namespace morvane

#endif  // MORVANE_LINT_SHELL_SYNTAX_H
