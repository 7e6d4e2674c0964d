// Pauses that do not wait, for tests.
#include <cstdio>

#include "platform/pause.h"

namespace morvane {

void pause_for(unsigned) {
  std::fflush(stdout);
}

}  // namespace morvane
