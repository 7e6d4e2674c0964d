// Moving changed files to where such files are kept.
#ifndef MORVANE_REMOVE_KEPT_FILES_H
#define MORVANE_REMOVE_KEPT_FILES_H

#include <string>

#include "platform/file.h"
#include "tree/file_status.h"

namespace morvane {

// Moves the file or link `name` in an open directory, which must still be what was looked at, to
// the path `to`; the directories above that are made, open to their owner alone. Nothing is
// replaced. Returns 0, or an errno that tells why it stays where it is.
int move_file(const descriptor& directory, const std::string& name, const file_status& looked_at,
              const std::string& to);

}  // namespace morvane

#endif  // MORVANE_REMOVE_KEPT_FILES_H
