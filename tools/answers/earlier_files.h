// Files of the current directory as they were, to be put back.
#ifndef MORVANE_ANSWERS_EARLIER_FILES_H
#define MORVANE_ANSWERS_EARLIER_FILES_H

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace morvane {

struct earlier_state {
  std::string name;
  std::optional<std::string> link{};     // where it leads, if it is one
  std::optional<std::string> content{};  // nothing: there was no file
  bool foreign = false;                  // something else than a file: it is left alone
  mode_t mode = 0;
  uid_t owner = 0;
  gid_t group = 0;
};

using earlier_files = std::vector<earlier_state>;

// Returns how the files of these names are; nothing, and `errno` tells why, where one of them
// cannot be read.
std::optional<earlier_files> remember_files(const std::vector<std::string>& names);

// Puts them back, and removes those that were not there. Returns the names of those for which that
// did not work. A file that is as it was is not touched.
std::vector<std::string> restore_files(const earlier_files& files);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_EARLIER_FILES_H
