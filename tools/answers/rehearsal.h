// A run that changes nothing, in a child process: its answers come from a file, and what it does to
// the host happens in memory.
#ifndef MORVANE_ANSWERS_REHEARSAL_H
#define MORVANE_ANSWERS_REHEARSAL_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "answer_file/answer_file.h"
#include "answers/answer_finding.h"
#include "answers/memory_effects.h"
#include "answers/plan.h"

namespace morvane {

struct answered_question {
  std::string identity;  // see `identity_of`
  std::string line;      // that answered it

  bool operator==(const answered_question&) const = default;
};

// What came of a rehearsal.
struct rehearsal {
  std::vector<answer_finding> findings;
  std::vector<answered_question> questions;  // in the order in which they came
  rehearsed_deeds deeds;
  std::vector<planned_product> plan;
  std::string results;  // an answer file of the run, in which values without a proposal are empty
  std::string errors;   // what the program wrote to standard error

  // Whether the run would end well with these answers.
  bool is_good() const { return findings.empty(); }
};

// Rehearses the run that answers `file` in the current directory; returns nothing, and `errno`
// tells why, where that could not be tried. A run that does not come to its end without a word
// about the answers is a finding, too.
std::optional<rehearsal> rehearse(const answer_file& file);

// A rehearsal as text, in which it comes back from the child, and the reverse; what the text does
// not hold stays empty.
std::string pack(const rehearsal& packed);
rehearsal unpack(std::string_view text);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_REHEARSAL_H
