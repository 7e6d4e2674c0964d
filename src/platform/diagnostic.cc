#include "platform/diagnostic.h"

#include <cstdio>

namespace morvane {

void diagnose(std::string_view line) {
  std::fflush(stdout);
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace morvane
