#include "install_makefile/rule_match.h"

#include <algorithm>
#include <utility>

#include "output/makefile_text.h"

namespace morvane {

namespace {

// Stands for what is looked for: no value holds a newline.
constexpr std::string_view WANTED = "\n";

struct rule_line {
  std::vector<std::string_view> marks;  // the conditions at its head
  std::string_view text;                // what follows them
};

rule_line split_marks(std::string_view line) {
  static const conditions known = conditions_of({});
  rule_line split;
  while (line.starts_with('{')) {
    const std::size_t end = std::min(line.find('}'), line.size() - 1);
    const std::string_view mark = line.substr(1, end - 1);
    const std::string_view name = mark.substr(mark.starts_with('!') ? 1 : 0);
    if (std::ranges::find(known, name, &condition::name) == known.end()) break;
    split.marks.push_back(mark);
    line.remove_prefix(end + 1);
  }
  split.text = line;
  return split;
}

// What stands before and behind the one value that is looked for.
struct frame {
  std::string before;
  std::string behind;

  std::optional<std::string> value_in(std::string_view line) const {
    if (line.size() < before.size() + behind.size() || !line.starts_with(before) ||
        !line.ends_with(behind)) {
      return std::nullopt;
    }
    line.remove_prefix(before.size());
    line.remove_suffix(behind.size());
    return std::string(line);
  }
};

std::vector<frame> frames_of(std::string_view wanted, std::string_view rule, places known) {
  known.push_back({wanted, std::string(WANTED)});
  std::vector<frame> frames;
  for (const std::string_view line : lines_of(rule)) {
    const std::string filled = fill_places(split_marks(line).text, known);
    const std::size_t at = filled.find(WANTED);
    if (at == std::string::npos || filled.find(WANTED, at + 1) != std::string::npos) continue;
    frames.push_back({filled.substr(0, at), filled.substr(at + 1)});
  }
  return frames;
}

}  // namespace

text_lines lines_of(std::string_view text) {
  text_lines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::optional<std::string> value_at(std::string_view wanted, std::string_view rule,
                                    const places& known, const text_lines& lines) {
  for (const frame& around : frames_of(wanted, rule, known)) {
    for (const std::string_view line : lines) {
      if (auto value = around.value_in(line)) return value;
    }
  }
  return std::nullopt;
}

std::vector<std::vector<std::string>> lists_at(std::string_view wanted, std::string_view rule,
                                               const places& known, const text_lines& lines) {
  std::vector<std::vector<std::string>> lists;
  for (const frame& around : frames_of(wanted, rule, known)) {
    std::vector<std::string> values;
    for (const std::string_view line : lines) {
      if (auto value = around.value_in(line)) values.push_back(*value);
    }
    lists.push_back(std::move(values));
  }
  return lists;
}

bool holds_line_of(std::string_view rule, std::string_view mark, const places& known,
                   const text_lines& lines) {
  for (const std::string_view line : lines_of(rule)) {
    const auto [marks, text] = split_marks(line);
    if (!mark.empty() && std::ranges::find(marks, mark) == marks.end()) continue;
    const bool has_a_place = text.find('{') != std::string_view::npos;
    if (has_a_place && std::ranges::find(lines, fill_places(text, known)) != lines.end()) {
      return true;
    }
  }
  return false;
}

}  // namespace morvane
