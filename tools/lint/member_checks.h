// The checks of what an archive holds.
#ifndef MORVANE_LINT_MEMBER_CHECKS_H
#define MORVANE_LINT_MEMBER_CHECKS_H

#include <string>

#include "archive/archive_reader.h"
#include "lint/finding_list.h"

namespace morvane {

// Adds which members of the archive `file`, which holds `content`, the installation of the product
// `identifier` could not install as they are.
void check_members(const std::string& identifier, const std::string& file,
                   const archive_content& content, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_MEMBER_CHECKS_H
