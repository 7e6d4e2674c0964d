#include "lint/makefile_targets.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "text/white_space.h"
#include "text/words.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

// Takes the next line off `rest`, with those that continue it behind a backslash.
string take_line(string_view& rest) {
  string line;
  for (;;) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    line += rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (!line.ends_with('\\') || rest.empty()) return line;
    line.back() = ' ';
  }
}

// Returns where the first colon or equals sign stands outside of "$(...)" and "${...}".
std::size_t find_operator(string_view line) {
  int depth = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (c == '(' || c == '{') ++depth;
    if (c == ')' || c == '}') depth = std::max(depth - 1, 0);
    if (depth == 0 && (c == ':' || c == '=')) return i;
  }
  return string_view::npos;
}

// Tells whether what stands behind a target's colon gives it a variable, and so is no rule.
bool assigns_variable(string_view behind) {
  const std::size_t end = behind.find_first_of("=;#|");
  return end != string_view::npos && behind[end] == '=';
}

// A rule, in what stands before and behind its colons.
struct rule_line {
  string_view targets;
  string_view behind;
};

std::optional<rule_line> as_rule(string_view line) {
  const std::size_t at = find_operator(line);
  if (at == string_view::npos || line[at] == '=') return std::nullopt;
  string_view targets = line.substr(0, at);
  string_view behind = line.substr(at);
  while (behind.starts_with(':')) behind.remove_prefix(1);
  if (behind.starts_with('=') || assigns_variable(behind)) return std::nullopt;
  if (targets.ends_with('&')) targets.remove_suffix(1);
  return rule_line{targets, behind};
}

bool begins_with_word(string_view line, string_view word) {
  return line.starts_with(word) &&
         (line.size() == word.size() || WHITE_SPACE.find(line[word.size()]) != string_view::npos);
}

bool includes(string_view line) {
  constexpr std::array<string_view, 6> WORDS = {"include",  "-include",  "sinclude",
                                                ".include", ".-include", ".sinclude"};
  return std::ranges::any_of(WORDS, [&](string_view word) { return begins_with_word(line, word); });
}

void take_line_of(string_view line, makefile_targets& targets) {
  line.remove_prefix(std::min(line.find_first_not_of(WHITE_SPACE), line.size()));
  if (line.empty() || line.starts_with('#')) return;
  if (includes(line)) {
    targets.hides_some = true;
    return;
  }
  const std::optional<rule_line> rule = as_rule(line);
  if (!rule) {
    // A function by itself, such as $(eval ...), may stand for anything.
    if (line.starts_with('$') && find_operator(line) == string_view::npos)
      targets.hides_some = true;
    return;
  }
  for (const string_view name : split_words(rule->targets, WHITE_SPACE)) {
    if (name == ".PHONY") {
      for (const string_view phony : split_words(rule->behind, WHITE_SPACE)) {
        targets.phony.emplace(phony);
      }
    }
    if (name.find_first_of("$%") != string_view::npos || name == ".DEFAULT") {
      targets.hides_some = true;
    }
    targets.names.emplace(name);
  }
}

}  // namespace

makefile_targets targets_of(string_view makefile) {
  makefile_targets targets;
  bool defines = false;  // a variable of several lines
  while (!makefile.empty()) {
    const bool is_command = makefile.starts_with('\t');
    const string line = take_line(makefile);
    if (begins_with_word(line, "define")) defines = true;
    if (begins_with_word(line, "endef")) defines = false;
    if (!is_command && !defines) take_line_of(line, targets);
  }
  return targets;
}

}  // namespace morvane
