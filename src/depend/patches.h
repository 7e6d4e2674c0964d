// The products that patches apply to.
#ifndef MORVANE_DEPEND_PATCHES_H
#define MORVANE_DEPEND_PATCHES_H

#include <array>
#include <optional>

#include "catalogue/product.h"
#include "depend/patch_match.h"

namespace morvane {

// One entry a slot of the product table; nothing where the slot does not match at all.
using match_levels = std::array<std::optional<match_level>, TABLE_SIZE>;

// Ranks every slot of `table` as the supplier of the original of `record` at patch level `patch`.
// `record` itself takes part. A missing (null) or free record is reported on standard error and
// leaves `levels` as they are.
void gen_possible(const product* record, const product_table& table, int patch,
                  match_levels& levels);

// Settles every needed patch of `record` that is still open: the two best matches silently, others
// where the operator accepts them. What stays open is reported only where `ask` is set; the
// operator may then search again. Does nothing for a product that will not be on the host. A
// missing (null) record is reported on standard error.
void get_patch_depend(product_table& table, product* record, bool ask);

// Hands the path of `record` on to the products that supply its needed patches, where they are
// installed in this run and have no path yet.
void export_path_to_patch_depend(const product& record);

}  // namespace morvane

#endif  // MORVANE_DEPEND_PATCHES_H
