// The host's board and its bus, for distributions that install onto boards. A run does not ask for
// them by itself.
#ifndef MORVANE_HOST_BOARD_H
#define MORVANE_HOST_BOARD_H

#include "text/text.h"

namespace morvane {

// The path of the board configuration file; a caller sets it before it reads the board.
extern text<60> trans_conf;

// The board type once read, then the bus type once chosen.
extern text<10> Board;

// Sets `Board` to the second word of the first line of `trans_conf` that is neither empty nor a
// comment. A line that starts with "#" or white space is a comment. Leaves `Board` as it was where
// the file cannot be read or holds fewer than two words.
void read_board_type();

// Derives a default bus from `Board`, asks for the bus until the answer is one of the two, and sets
// `Board` to it.
void get_board_bus_type();

}  // namespace morvane

#endif  // MORVANE_HOST_BOARD_H
