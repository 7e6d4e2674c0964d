#include "lint/makefile_targets.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "text/white_space.h"
#include "text/words.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

// Takes the next line off `rest`, with those that continue it behind a backslash, and counts them.
string take_line(string_view& rest, std::size_t& count) {
  string line;
  for (;;) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    line += rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    ++count;
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

// Returns a variable such as $NAME, of which make takes the first letter alone; empty where there
// is none.
string_view bare_variable(string_view line) {
  for (std::size_t i = 0; i + 2 < line.size(); ++i) {
    if (line[i] != '$') continue;
    const string_view name = line.substr(i + 1);
    const std::size_t length = name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_");
    if (length != 0 && std::min(length, name.size()) > 1)
      return line.substr(i, 1 + std::min(length, name.size()));
    ++i;  // "$$" is the shell's
  }
  return "";
}

// Reads a makefile line by line.
class makefile_reader {
 public:
  makefile_targets read(string_view makefile) {
    std::size_t count = 0;
    while (!makefile.empty()) {
      const std::size_t number = count + 1;
      const string line = take_line(makefile, count);
      if (begins_with_word(line, "define")) defines_ = true;
      if (begins_with_word(line, "endef")) defines_ = false;
      if (defines_) continue;
      note_variable(line, number);
      if (line.starts_with('\t')) {
        targets_.with_commands.insert(open_.begin(), open_.end());
      } else {
        take(line, number);
      }
    }
    return targets_;
  }

 private:
  void note_variable(string_view line, std::size_t number) {
    if (targets_.bare_variable_line != 0 || line.starts_with('#')) return;
    targets_.bare_variable = bare_variable(line);
    if (!targets_.bare_variable.empty()) targets_.bare_variable_line = number;
  }

  void take(string_view line, std::size_t number) {
    const bool indented = line.starts_with(' ');
    line.remove_prefix(std::min(line.find_first_not_of(WHITE_SPACE), line.size()));
    if (line.empty() || line.starts_with('#')) return;
    if (includes(line)) {
      targets_.hides_some = true;
      return;
    }
    if (const std::optional<rule_line> rule = as_rule(line)) {
      open_.clear();
      take_rule(*rule);
    } else if (find_operator(line) == string_view::npos && line.starts_with('$')) {
      targets_.hides_some = true;  // a function by itself, such as $(eval ...), may be anything
    } else if (indented && !open_.empty() && is_command(line) && targets_.blanks_for_tab == 0) {
      targets_.blanks_for_tab = number;
    }
  }

  // Tells whether a line that is neither rule nor comment is meant for a command: it is neither an
  // assignment nor one of the words that make knows.
  static bool is_command(string_view line) {
    constexpr auto WORDS =
        std::to_array<string_view>({"ifeq", "ifneq", "ifdef", "ifndef", "else", "endif", "export",
                                    "unexport", "override", "vpath", "undefine", "load"});
    const bool is_known =
        std::ranges::any_of(WORDS, [&](string_view word) { return begins_with_word(line, word); });
    return !is_known && !line.starts_with('.') && find_operator(line) == string_view::npos;
  }

  void take_rule(const rule_line& rule) {
    const std::size_t semicolon = rule.behind.find(';');
    const std::vector<string_view> before =
        split_words(rule.behind.substr(0, rule.behind.find_first_of(";#")), WHITE_SPACE);
    for (const string_view name : split_words(rule.targets, WHITE_SPACE)) {
      if (name == ".PHONY") targets_.phony.insert(before.begin(), before.end());
      if (name.find_first_of("$%") != string_view::npos || name == ".DEFAULT") {
        targets_.hides_some = true;
      }
      targets_.names.emplace(name);
      open_.emplace_back(name);
      if (!before.empty()) targets_.with_prerequisites.emplace(name);
      if (semicolon != string_view::npos) targets_.with_commands.emplace(name);
    }
  }

  makefile_targets targets_;
  std::vector<string> open_;  // the targets of the rule that commands belong to
  bool defines_ = false;      // a variable of several lines
};

}  // namespace

makefile_targets targets_of(string_view makefile) {
  return makefile_reader().read(makefile);
}

}  // namespace morvane
