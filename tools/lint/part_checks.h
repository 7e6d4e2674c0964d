// The checks of the makefile in an archive, which is to make the parts of the product.
#ifndef MORVANE_LINT_PART_CHECKS_H
#define MORVANE_LINT_PART_CHECKS_H

#include "archive/archive_reader.h"
#include "distribution/distribution.h"
#include "lint/archived_files.h"
#include "lint/finding_list.h"

namespace morvane {

// Adds which parts of the product its archive, with `content` and `files`, does not make, and what
// is wrong with install/Makefile in it.
void check_parts(const distributed_product& product, const archive_content& content,
                 const archived_files& files, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_PART_CHECKS_H
