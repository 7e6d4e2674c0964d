// Who will own a product's files, and who else may use them.
#ifndef MORVANE_SETTINGS_OWNERSHIP_H
#define MORVANE_SETTINGS_OWNERSHIP_H

#include "catalogue/product.h"

namespace morvane {

// Settle the owner, the group and the access of other users of `record` by asking until an answer
// is acceptable; a product of `table` in the same directory gives the default. Each does nothing
// where its value is settled. A missing (null) or free record is reported on standard error.
void get_product_owner(product* record, const product_table& table);
void get_product_group(product* record, const product_table& table);
void get_product_access(product* record);

// Returns the name to show in these questions: the name, else the full name, else the identifier.
std::string_view short_product_name(const product& record);

}  // namespace morvane

#endif  // MORVANE_SETTINGS_OWNERSHIP_H
