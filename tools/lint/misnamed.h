// Files whose names are not quite what the program looks for.
#ifndef MORVANE_LINT_MISNAMED_H
#define MORVANE_LINT_MISNAMED_H

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

// Return which of `files` is meant for the description or the archive of the product `identifier`:
// one that differs in capitals alone, or has another ending; empty where there is none.
std::string misnamed_description(std::string_view identifier,
                                 const std::vector<std::string>& files);
std::string misnamed_archive(std::string_view identifier, const std::vector<std::string>& files);

// Returns which of `files` is meant for the message file; empty where there is none.
std::string misnamed_messages(const std::vector<std::string>& files);

}  // namespace morvane

#endif  // MORVANE_LINT_MISNAMED_H
