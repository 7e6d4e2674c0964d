// morvane-lint: says what is wrong in a distribution before an operator meets it.
#include "lint/lint_command.h"

int main(int count, char** arguments) {
  return static_cast<int>(morvane::run_lint(count, arguments));
}
