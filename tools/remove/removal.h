// What taking a product away does, decided before anything is done.
#ifndef MORVANE_REMOVE_REMOVAL_H
#define MORVANE_REMOVE_REMOVAL_H

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "installed/look.h"
#include "receipt/receipt.h"
#include "receipt/receipt_store.h"

namespace morvane {

enum class deed {
  REMOVE,
  KEEP,   // somebody changed it: it stays, or is moved to where such files are kept
  LEAVE,  // it is not the product's alone, or lay there before
  NONE,   // it is gone already
};

struct planned_path {
  const receipt_entry* entry = nullptr;
  morvane::deed deed = deed::NONE;
  found_path found;
  std::string why;  // of what is kept or left, and a remark on what is removed; may be empty
};

struct removal {
  const stored_receipt* product = nullptr;
  std::vector<planned_path> paths;  // those below a directory before it
  std::vector<std::string> faults;  // what cannot be looked at: then nothing is to be done
};

// Products, by the addresses of their receipts.
using product_set = std::set<const receipt*>;

// Returns what the removal of `product` does while those of `removed`, of which it is one, are
// taken away. Directories are to be removed as far as they are empty by then.
removal plan_removal(const receipt_store& store, const stored_receipt& product,
                     const product_set& removed);

// Returns how many paths there are of a kind, in words such as "2 files, 1 link".
std::string counted_kinds(const std::vector<const receipt_entry*>& entries);

// Returns what is said of one path.
std::string line_of(const planned_path& path);

// Returns what the plan says, a line for the product, and one for each path with something to say.
std::string text_of(const removal& planned);

}  // namespace morvane

#endif  // MORVANE_REMOVE_REMOVAL_H
