// Files that an installation leaves with the operator's own user or group.
#ifndef MORVANE_OUTPUT_LEFT_FILES_H
#define MORVANE_OUTPUT_LEFT_FILES_H

#include <string>

#include "catalogue/product.h"

namespace morvane {

// Tell whether the files that belong to the effective user or group under the path of `record`,
// left there by the product's own targets for example, must be given to the product's owner or
// group. Where they must, `old_name` is the name of that user or group.
bool check_uid_diff(const product& record, std::string& old_name);
bool check_gid_diff(const product& record, std::string& old_name);

}  // namespace morvane

#endif  // MORVANE_OUTPUT_LEFT_FILES_H
