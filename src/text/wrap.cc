#include "text/wrap.h"

#include <algorithm>

namespace morvane {

namespace {

// What stands around the text of every output line.
struct frame {
  std::string_view prefix;
  std::string_view suffix;
  std::size_t columns;  // between the frames
  std::string& output;

  // Appends an output line with the text `line`, padded where there is a suffix.
  void put(std::string_view line) {
    output += prefix;
    output += line;
    if (!suffix.empty() && line.size() < columns) output.append(columns - line.size(), ' ');
    output += suffix;
    output += '\n';
  }
};

// Returns `line` stretched by `missing` blanks, spread over its `gaps` blanks: where they do not
// come out even, the last gaps are the wider ones.
std::string justify(std::string_view line, std::size_t missing, std::size_t gaps) {
  const std::size_t each = missing / gaps;
  const std::size_t first_wider = gaps - missing % gaps;
  std::string result;
  std::size_t gap = 0;
  for (const char c : line) {
    result += c;
    if (c != ' ') continue;
    result.append(gap < first_wider ? each : each + 1, ' ');
    ++gap;
  }
  return result;
}

// Puts what a wide line shows: the message from its very start up to `end`, in pieces, again for
// every line. Message files with so wide a ruler rely on it.
void put_pieces(frame& out, std::string_view message, std::size_t end) {
  for (std::size_t k = 0; k < out.columns && k < end; k += WIDE_LINE) {
    out.put(message.substr(k, std::min<std::size_t>(WIDE_LINE, end - k)));
  }
}

}  // namespace

// Takes line after line off the front, as long as more is left than fits: up to the last newline in
// reach, else up to the last blank, else as much as fits.
std::string wrap(std::string_view message, int width, std::string_view prefix,
                 std::string_view suffix) {
  std::string output;
  const std::size_t frames = prefix.size() + suffix.size();
  const std::size_t whole = static_cast<std::size_t>(std::max(width, 0));
  const std::size_t columns = whole > frames ? whole - frames : 0;
  frame out{prefix, suffix, columns, output};

  std::size_t start = 0;
  while (columns > 0 && start + columns < message.size()) {
    // A line may break behind its last column too.
    const std::string_view reach = message.substr(start, columns + 1);
    std::size_t length = reach.rfind('\n');
    const bool at_newline = length != std::string_view::npos;
    if (!at_newline) length = reach.rfind(' ');
    const bool at_break = length != std::string_view::npos;
    if (!at_break) length = columns;

    const std::string_view line = reach.substr(0, length);
    const auto gaps = static_cast<std::size_t>(std::count(line.begin(), line.end(), ' '));
    if (columns >= WIDE_LINE) {
      put_pieces(out, message, start + length);
    } else if (at_break && !at_newline && length < columns && gaps > 0) {
      out.put(justify(line, columns - length, gaps));
    } else {
      out.put(line);
    }
    // Wide lines skip a character even where they were cut hard.
    start += length + (at_break || columns >= WIDE_LINE ? 1 : 0);
  }

  std::string_view rest = message.substr(start);
  if (rest.ends_with('\n')) rest.remove_suffix(1);
  out.put(rest);
  return output;
}

}  // namespace morvane
