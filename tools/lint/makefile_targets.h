// The targets of a makefile, as far as they can be known without running make.
#ifndef MORVANE_LINT_MAKEFILE_TARGETS_H
#define MORVANE_LINT_MAKEFILE_TARGETS_H

#include <set>
#include <string>
#include <string_view>

namespace morvane {

struct makefile_targets {
  std::set<std::string> names;
  std::set<std::string> phony;
  bool hides_some = false;  // it includes files, or names targets by patterns or variables
};

// Reads the text of a makefile, of GNU or BSD make. Nothing in it is run.
makefile_targets targets_of(std::string_view makefile);

}  // namespace morvane

#endif  // MORVANE_LINT_MAKEFILE_TARGETS_H
