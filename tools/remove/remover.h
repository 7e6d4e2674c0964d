// Taking a product away as planned.
#ifndef MORVANE_REMOVE_REMOVER_H
#define MORVANE_REMOVE_REMOVER_H

#include <string>
#include <vector>

#include "receipt/receipt_store.h"
#include "remove/removal.h"

namespace morvane {

struct removed_product {
  std::vector<const receipt_entry*> removed;
  std::vector<std::string> remarks;  // on what stays besides what was planned, or was moved
  std::vector<std::string> faults;   // why it is not finished: the receipt is still there
};

// Does what is planned. A file is removed only while it is the one that was looked at, and only by
// its name in a directory that was reached without a link. What was changed is moved below
// `keep_in` unless that is empty. The receipt goes last, and only when all else is done: whatever
// ends a removal early, the next one goes on with it. Products of `store` that have a path, too,
// are told what lay there before the first of them came.
removed_product remove(const removal& planned, receipt_store& store, const std::string& registry,
                       const std::string& keep_in);

}  // namespace morvane

#endif  // MORVANE_REMOVE_REMOVER_H
