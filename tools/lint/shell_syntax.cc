#include "lint/shell_syntax.h"

#include <cstdio>

namespace morvane {

bool is_shell_syntax(std::string_view command) {
  // It goes to the standard input, since old shells run an argument of -c in spite of -n. The shell
  // is the one that runs it for the program, whatever the PATH.
  FILE* shell = popen("exec /bin/sh -n >/dev/null 2>&1", "w");
  if (shell == nullptr) return true;
  std::fwrite(command.data(), 1, command.size(), shell);
  return pclose(shell) == 0;
}

}  // namespace morvane
