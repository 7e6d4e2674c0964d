// The targets of a makefile, as far as they can be known without running make.
#ifndef MORVANE_LINT_MAKEFILE_TARGETS_H
#define MORVANE_LINT_MAKEFILE_TARGETS_H

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

namespace morvane {

struct makefile_targets {
  std::set<std::string> names;
  std::set<std::string> phony;
  std::set<std::string> with_commands;
  std::set<std::string> with_prerequisites;
  bool hides_some = false;  // it includes files, or names targets by patterns or variables

  // Lines, from 1, or 0: the first that begins with blanks where only a tab begins a command, and
  // the first with a variable of several letters that stands in no parentheses, and what is there.
  std::size_t blanks_for_tab = 0;
  std::size_t bare_variable_line = 0;
  std::string bare_variable;
};

// Reads the text of a makefile, of GNU or BSD make. Nothing in it is run.
makefile_targets targets_of(std::string_view makefile);

}  // namespace morvane

#endif  // MORVANE_LINT_MAKEFILE_TARGETS_H
