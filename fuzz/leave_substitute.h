// Leaving the program comes back to whoever started the run.
#ifndef MORVANE_FUZZ_LEAVE_SUBSTITUTE_H
#define MORVANE_FUZZ_LEAVE_SUBSTITUTE_H

namespace morvane {

// What `quit` throws once it has said farewell.
struct farewell {};

}  // namespace morvane

#endif  // MORVANE_FUZZ_LEAVE_SUBSTITUTE_H
