#include "report/finding.h"

#include <cstdio>

namespace morvane {

std::string_view severity_name(severity s) {
  switch (s) {
    case severity::NOTE:
      return "note";
    case severity::WARNING:
      return "warning";
    case severity::ERROR:
      break;
  }
  return "error";
}

std::string printable(std::string_view bytes) {
  std::string shown;
  for (const char c : bytes) {
    if (c >= ' ' && c <= '~') {
      shown += c;
    } else if (c == '\n') {
      shown += "\\n";
    } else if (c == '\t') {
      shown += "\\t";
    } else {
      char octal[5];
      std::snprintf(octal, sizeof octal, "\\%03o", static_cast<unsigned>(c) & 0xffU);
      shown += octal;
    }
  }
  return shown;
}

std::string in_quotes(std::string_view text) {
  constexpr std::size_t MOST = 160;
  if (text.size() <= MOST) return "'" + std::string(text) + "'";
  return "'" + std::string(text.substr(0, MOST)) + "...'";
}

}  // namespace morvane
