#include "platform/pause.h"

#include <unistd.h>

#include <cstdio>

namespace morvane {

void pause_for(unsigned seconds) {
  std::fflush(stdout);
  sleep(seconds);
}

}  // namespace morvane
