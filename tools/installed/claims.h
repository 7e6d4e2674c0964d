// Products that share directories: who else has a path in its receipt, and whose is what lies
// there, as with a patch over its original.
#ifndef MORVANE_INSTALLED_CLAIMS_H
#define MORVANE_INSTALLED_CLAIMS_H

#include <string>
#include <vector>

#include "receipt/receipt.h"
#include "receipt/receipt_store.h"

namespace morvane {

// Another product's entry for a path.
struct claim {
  const receipt* by = nullptr;
  const receipt_entry* entry = nullptr;
};

// The receipts of other products whose directories lie in that of one product, or around it.
class neighbours {
 public:
  neighbours(const receipt_store& store, const receipt& of);

  // Returns what they say of a path of the product.
  std::vector<claim> claims_on(const receipt_entry& entry) const;

  // Returns the entry that tells what lies at the path: the last one to be put there.
  claim last_on(const receipt_entry& entry) const;

  // Tells whether one of them has this absolute path, or is kept in the file of this path.
  bool know(const std::string& absolute) const;

 private:
  const receipt& of_;
  std::vector<const receipt*> others_;
};

// Returns the file of the receipt beside its product.
std::string file_beside(const receipt& of);

}  // namespace morvane

#endif  // MORVANE_INSTALLED_CLAIMS_H
