#include "platform/diagnostic.h"

#include <cstdio>

#include "version/version.h"

namespace morvane {

void diagnose(std::string_view line) {
  std::fflush(stdout);
  std::fwrite(line.data(), 1, line.size(), stderr);
}

void diagnose_exhausted_memory() {
  diagnose(PROGRAM_NAME);
  diagnose(": failed to allocate memory");
}

}  // namespace morvane
