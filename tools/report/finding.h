// What a command has found out about a file.
#ifndef MORVANE_REPORT_FINDING_H
#define MORVANE_REPORT_FINDING_H

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>

namespace morvane {

enum class severity { NOTE, WARNING, ERROR };

// Returns "note", "warning" or "error".
std::string_view severity_name(severity s);

// Sorts by place. What concerns a whole file stands at its first character.
struct finding {
  std::string file;
  std::size_t line = 1;
  std::size_t column = 1;  // in bytes
  std::string id;
  std::string text;
  morvane::severity severity = severity::ERROR;

  auto operator<=>(const finding&) const = default;
};

// Returns `bytes` with all but printable ASCII as in C, so that it does no harm on a terminal.
std::string printable(std::string_view bytes);

// Returns `text` in single quotes for the text of a finding; of a long one the beginning.
std::string in_quotes(std::string_view text);

}  // namespace morvane

#endif  // MORVANE_REPORT_FINDING_H
