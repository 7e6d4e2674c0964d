// morvane-remove: takes products away that were installed.
#include "remove/remove_command.h"

int main(int count, char** arguments) {
  return static_cast<int>(morvane::run_remove(count, arguments));
}
