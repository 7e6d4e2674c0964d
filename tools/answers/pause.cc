// In the place of the program's pauses: nobody reads what a rehearsal prints.
#include "platform/pause.h"

#include <unistd.h>

#include <cstdio>

#include "answers/child_run.h"

namespace morvane {

void pause_for(unsigned seconds) {
  std::fflush(stdout);
  if (operator_is_there()) sleep(seconds);
}

}  // namespace morvane
