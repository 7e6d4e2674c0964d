// Waiting, so that a notice is read before it scrolls away.
#ifndef MORVANE_PLATFORM_PAUSE_H
#define MORVANE_PLATFORM_PAUSE_H

namespace morvane {

// Waits for `seconds` (1 or more) after everything printed so far has reached the screen.
void pause_for(unsigned seconds);

}  // namespace morvane

#endif  // MORVANE_PLATFORM_PAUSE_H
