// The ordinary run, whose answers are kept.
#ifndef MORVANE_ANSWERS_RECORDING_H
#define MORVANE_ANSWERS_RECORDING_H

#include <functional>
#include <string>
#include <string_view>

namespace morvane {

// Runs the program for the operator and ends the process as it does. Where that is with status 0
// the answers go to the file `path` before; where that does not work, `complain` is told why and
// the status is that of a failure.
[[noreturn]] void record_run(const std::string& path,
                             const std::function<void(std::string_view why)>& complain);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_RECORDING_H
