#include "lint/byte_checks.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace morvane {

namespace {

using std::string;
using std::string_view;

constexpr string_view BYTE_ORDER_MARK = "\xef\xbb\xbf";

// Returns what a text that begins with a byte that is no ASCII begins with.
string name_of_bytes(string_view text) {
  if (text.starts_with("\xe2\x80\x9c") || text.starts_with("\xe2\x80\x9d") ||
      text.starts_with("\xe2\x80\x9e")) {
    return "a typographic quote, which the program does not know as one";
  }
  if (text.starts_with("\xc2\xa0"))
    return "a blank of a kind that the program does not know as one";
  return "a byte that is no ASCII";
}

}  // namespace

bool begins_with_mark(string_view text) {
  return text.starts_with(BYTE_ORDER_MARK);
}

void check_bytes(const read_description& description, const std::vector<string_view>& lines,
                 finding_list& findings) {
  const auto add = [&](check_id id, const place_in_file& place, string text) {
    findings.add(id, description.file, place, std::move(text));
  };
  if (begins_with_mark(description.text)) {
    add("byte-order-mark", WHOLE_FILE,
        "the file begins with a byte order mark, for which the program skips the first line: "
        "save it without");
  }
  for (std::size_t i = 0; i < lines.size(); ++i) {
    string_view line = lines[i];
    std::size_t skipped = i == 0 && begins_with_mark(description.text) ? BYTE_ORDER_MARK.size() : 0;
    if (line.ends_with('\r')) line.remove_suffix(1);
    const auto is_control = [](char c) { return (c >= 0 && c < ' ' && c != '\t') || c == '\177'; };
    const auto control = std::ranges::find_if(line, is_control);
    if (control != line.end()) {
      add("control-character", {i + 1, static_cast<std::size_t>(control - line.begin()) + 1},
          "a control character, which the operator's terminal would get: remove it");
    }
    const auto other = std::ranges::find_if(line.begin() + static_cast<std::ptrdiff_t>(skipped),
                                            line.end(), [](char c) { return c < 0; });
    if (other != line.end()) {
      add("not-ascii", {i + 1, static_cast<std::size_t>(other - line.begin()) + 1},
          name_of_bytes(line.substr(static_cast<std::size_t>(other - line.begin()))) +
              ": each byte counts as a column, so that lines lose their shape; write ASCII");
    }
  }
}

}  // namespace morvane
