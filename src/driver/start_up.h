// The beginning of a run.
#ifndef MORVANE_DRIVER_START_UP_H
#define MORVANE_DRIVER_START_UP_H

namespace morvane {

// Makes the surroundings safe, loads the message table, and warns an operator who is not the
// superuser. A missing message file ends the program; so does another run in this directory.
void start_up();

}  // namespace morvane

#endif  // MORVANE_DRIVER_START_UP_H
