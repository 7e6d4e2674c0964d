// Copies of files that are about to be replaced or taken away.
#ifndef MORVANE_TREE_COPY_H
#define MORVANE_TREE_COPY_H

#include <string>

#include "platform/file.h"
#include "tree/file_status.h"

namespace morvane {

// Makes the directories of `path` that are missing, open to their owner alone. Returns false, with
// `errno` telling why, where that fails.
bool make_private_directories(const std::string& path);

// Copies the plain file or link `name` in an open directory, which must still be what was looked
// at, to the path `to`, where nothing may be, with mode, owner, group and times; what an ordinary
// user copies is his own. The copy is its owner's alone until it is complete. Returns false, with
// `errno` telling why, and without a copy, where that fails: EAGAIN where it was changed.
bool copy_to(const descriptor& directory, const std::string& name, const file_status& looked_at,
             const std::string& to);

}  // namespace morvane

#endif  // MORVANE_TREE_COPY_H
