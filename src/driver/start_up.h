// The beginning of a run.
#ifndef MORVANE_DRIVER_START_UP_H
#define MORVANE_DRIVER_START_UP_H

namespace morvane {

// Makes the surroundings safe, loads the message table, and warns an operator who is not the
// superuser. A missing message file ends the program; so does another run in this directory.
void start_up();

// Opens each standard descriptor that is closed on /dev/null: a file opened later would otherwise
// take its place, and dialogue or diagnostics would end up in it. `start_up` begins with that.
void open_missing_descriptors();

}  // namespace morvane

#endif  // MORVANE_DRIVER_START_UP_H
