#include "platform/diagnostic.h"

#include <cstdio>

#include "version/version.h"

namespace morvane {

void diagnose(std::string_view text) {
  std::fflush(stdout);
  std::fwrite(text.data(), 1, text.size(), stderr);
}

void diagnose_exhausted_memory() {
  diagnose(PROGRAM_NAME);
  diagnose(": failed to allocate memory");
}

}  // namespace morvane
