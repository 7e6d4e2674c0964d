// The run itself, after its rehearsal.
#ifndef MORVANE_ANSWERS_REAL_RUN_H
#define MORVANE_ANSWERS_REAL_RUN_H

#include <string>
#include <vector>

#include "answers/rehearsal.h"

namespace morvane {

struct run_outcome {
  bool good = false;
  std::string why;                   // it parted from its rehearsal
  std::vector<std::string> remains;  // what could not be taken back
};

// Runs the program with the answers of `rehearsed`, question by question: at the first that is
// another one, and at a deed that is another one, the run ends as at the end of the answers. What a
// run that does not end well has made is taken back: the directories it created go, as far as they
// are empty, and the files of the current directory are what they were.
run_outcome run_as_rehearsed(const rehearsal& rehearsed);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_REAL_RUN_H
