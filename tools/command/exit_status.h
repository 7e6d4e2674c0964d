// How the commands end.
#ifndef MORVANE_COMMAND_EXIT_STATUS_H
#define MORVANE_COMMAND_EXIT_STATUS_H

namespace morvane {

enum class exit_status {
  GOOD = 0,
  FINDINGS = 1,   // or differences
  WRONG_USE = 2,  // or input that cannot be read
  REFUSED = 3,    // and nothing was written
  FAILED = 4,     // after writing had begun
};

}  // namespace morvane

#endif  // MORVANE_COMMAND_EXIT_STATUS_H
