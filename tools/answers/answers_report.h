// What morvane-answers says of a rehearsal and a run.
#ifndef MORVANE_ANSWERS_ANSWERS_REPORT_H
#define MORVANE_ANSWERS_ANSWERS_REPORT_H

#include <string>
#include <string_view>
#include <vector>

#include "answers/answer_finding.h"
#include "answers/rehearsal.h"
#include "command/exit_status.h"

namespace morvane {

// Returns the findings for people, a line each, sorted by the lines of `file`.
std::string findings_text(std::string_view file, std::vector<answer_finding> findings);

// Returns all of it as JSON; `why` tells what went wrong beside the findings.
std::string answers_json(std::string_view file, const rehearsal& seen, exit_status status,
                         std::string_view why);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_ANSWERS_REPORT_H
