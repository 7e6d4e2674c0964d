// What is installed, compared with what its receipt tells.
#ifndef MORVANE_VERIFY_VERIFICATION_H
#define MORVANE_VERIFY_VERIFICATION_H

#include <cstddef>
#include <string>
#include <vector>

#include "installed/look.h"
#include "receipt/receipt.h"
#include "receipt/receipt_store.h"

namespace morvane {

// Something that is not as it should be.
struct verified_path {
  std::string path;         // below the directory of the product
  bool additional = false;  // no receipt has it, in a directory of the product's own
  receipt_entry expected;   // of no use for one that is additional
  found_path found;
  std::string of;  // the other product whose file it is since, such as a patch; or empty
};

struct verification {
  const stored_receipt* product = nullptr;
  std::size_t paths = 0;                 // that were compared
  std::vector<verified_path> differing;  // sorted by their paths
  std::vector<std::string> faults;       // what could not be looked at for additional files
};

// Verifies one of the products of `store`.
verification verify(const receipt_store& store, const stored_receipt& product);

}  // namespace morvane

#endif  // MORVANE_VERIFY_VERIFICATION_H
