// morvane-install: shows what make will do, does it product by product, and leaves receipts.
#include "install/install_command.h"

int main(int count, char** arguments) {
  return static_cast<int>(morvane::run_install(count, arguments));
}
