// morvane-verify: compares what is installed with what was installed.
#include "verify/verify_command.h"

int main(int count, char** arguments) {
  return static_cast<int>(morvane::run_verify(count, arguments));
}
