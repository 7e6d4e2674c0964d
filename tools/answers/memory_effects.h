// The effects of a rehearsal: directories and files come about in memory, over the host as it is.
#ifndef MORVANE_ANSWERS_MEMORY_EFFECTS_H
#define MORVANE_ANSWERS_MEMORY_EFFECTS_H

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/effects.h"

namespace morvane {

// What a run would have done to the host.
struct rehearsed_deeds {
  std::vector<std::string> directories;  // made by the run, each above the next
  // The content of each file of the current directory that was written; nothing for one that is
  // gone.
  std::map<std::string, std::optional<std::string>, std::less<>> files;
  // Every content that was written, in order: a file may be written twice.
  std::vector<std::pair<std::string, std::string>> written;
};

// Returns effects that only note in `deeds` what they would do. They tell of the host what the real
// ones would find out, except that they try out a group on a scratch file.
effects effects_in_memory(rehearsed_deeds& deeds);

// Returns those of `path` and the directories above it that are not there, the uppermost first.
std::vector<std::string> missing_directories(const std::string& path);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_MEMORY_EFFECTS_H
