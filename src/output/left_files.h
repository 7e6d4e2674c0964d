// Files that an installation leaves with the operator's own user or group.
#ifndef MORVANE_OUTPUT_LEFT_FILES_H
#define MORVANE_OUTPUT_LEFT_FILES_H

#include <string>

#include "catalogue/product.h"

namespace morvane {

// Store the name of the effective user or group in `old_name` and tell whether the files that
// belong to it under the path of `record`, left there by the product's own targets for example,
// must be given to the product's owner or group.
bool check_uid_diff(const product& record, std::string& old_name);
bool check_gid_diff(const product& record, std::string& old_name);

}  // namespace morvane

#endif  // MORVANE_OUTPUT_LEFT_FILES_H
