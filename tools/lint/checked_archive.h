// Reading an archive, and what is wrong with it by itself.
#ifndef MORVANE_LINT_CHECKED_ARCHIVE_H
#define MORVANE_LINT_CHECKED_ARCHIVE_H

#include <string>

#include "archive/archive_reader.h"
#include "archive/tar_listing.h"
#include "lint/finding_list.h"

namespace morvane {

// Returns what the archive `file` of the product `identifier` holds, with the content of its
// install/Makefile, and adds what is wrong with it. `listing` is that of the archive.
archive_content read_checked_archive(const std::string& identifier, const std::string& file,
                                     tar_listing& listing, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_CHECKED_ARCHIVE_H
