// The decisions about dependencies and install targets that only the operator can make.
#ifndef MORVANE_DEPEND_CONFIRMATION_H
#define MORVANE_DEPEND_CONFIRMATION_H

#include <optional>
#include <string>
#include <string_view>

#include "catalogue/product.h"

namespace morvane {

// Shows `candidate` and asks whether it is the product that `target` of `record` needs, or, where
// there is no target, the one that the patch `record` applies to. Returns the answer.
bool product_accept(const product& record, std::optional<std::string_view> target,
                    const product& candidate);

// Decides whether `target` of the new product `record` is installed: by its question, or, where it
// has none, always. Returns false where a target without a question needs an owner or group that
// the operator may not give; its state then stays as it is.
bool new_installation(const product& record, target_dep& target);

// Decides whether `target` of `record`, a product configured again, is installed again: only where
// its question is answered with yes.
void re_installation(const product& record, target_dep& target);

// Returns the line of a product summary that shows the version, or that it is unknown; version 0.0
// counts as unknown.
std::string version_line(const product& record);

}  // namespace morvane

#endif  // MORVANE_DEPEND_CONFIRMATION_H
