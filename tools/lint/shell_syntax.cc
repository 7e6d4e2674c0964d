#include "lint/shell_syntax.h"

#include <cstdio>

namespace morvane {

bool is_shell_syntax(std::string_view command) {
  // It goes to the standard input, since old shells run an argument of -c in spite of -n.
  FILE* shell = popen("exec sh -n >/dev/null 2>&1", "w");
  if (shell == nullptr) return true;
  std::fwrite(command.data(), 1, command.size(), shell);
  return pclose(shell) == 0;
}

}  // namespace morvane
