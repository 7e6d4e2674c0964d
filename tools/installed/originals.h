// Which installed products a patch builds on.
#ifndef MORVANE_INSTALLED_ORIGINALS_H
#define MORVANE_INSTALLED_ORIGINALS_H

#include <string>
#include <vector>

namespace morvane {

// Returns the identifiers of the products in `directory` that the product `id` there is a patch of,
// by the descriptions of both; none where it is no patch. Fill the message table before, for the
// keywords of descriptions.
std::vector<std::string> originals_of(const std::string& directory, const std::string& id);

}  // namespace morvane

#endif  // MORVANE_INSTALLED_ORIGINALS_H
