// What a removal does, or did, for programs.
#ifndef MORVANE_REMOVE_REMOVE_REPORT_H
#define MORVANE_REMOVE_REMOVE_REPORT_H

#include <string>
#include <vector>

#include "remove/removal.h"
#include "remove/remover.h"

namespace morvane {

// Returns what is planned, for each product what goes and what stays, and why.
std::string json_of(const std::vector<removal>& planned);

// Returns the same of what was done: `done` has a member for each product that was begun.
std::string json_of(const std::vector<removal>& planned, const std::vector<removed_product>& done);

}  // namespace morvane

#endif  // MORVANE_REMOVE_REMOVE_REPORT_H
