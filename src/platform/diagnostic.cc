#include "platform/diagnostic.h"

#include <cstdio>

#include "version/version.h"

namespace morvane {

namespace {

// Needs no memory: it may be what is exhausted.
void diagnose_line(std::string_view kind, std::string_view text) {
  for (const std::string_view piece : {PROGRAM_NAME, kind, text, std::string_view("\n")}) {
    diagnose(piece);
  }
}

}  // namespace

void diagnose(std::string_view text) {
  std::fflush(stdout);
  std::fwrite(text.data(), 1, text.size(), stderr);
}

void diagnose_warning(std::string_view text) {
  diagnose_line(" : warning : ", text);
}

void diagnose_error(std::string_view text) {
  diagnose_line(" : error : ", text);
}

void diagnose_exhausted_memory() {
  diagnose(PROGRAM_NAME);
  diagnose(": failed to allocate memory");
}

}  // namespace morvane
