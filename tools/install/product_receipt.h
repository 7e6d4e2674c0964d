// The receipt of a product that is being installed: what lies in its directory before and after.
#ifndef MORVANE_INSTALL_PRODUCT_RECEIPT_H
#define MORVANE_INSTALL_PRODUCT_RECEIPT_H

#include <map>
#include <set>
#include <string>

#include "install/plan.h"
#include "platform/file.h"
#include "receipt/receipt.h"
#include "tree/file_status.h"

namespace morvane {

// Notes in the receipt of an earlier installation, if there is one, that it tells of a product that
// is not complete: the next installation begins. Returns what went wrong; empty where nothing did.
std::string mark_incomplete(const product_facts& facts, const std::string& registry);

class product_receipt {
 public:
  // Looks at the product's directory as it is before make.
  explicit product_receipt(const product_plan& product);

  // Looks at it once more, and keeps the receipt, beside the product and in `registry`. Returns
  // what went wrong; empty where nothing did.
  std::string keep(const std::string& registry) const;

 private:
  using tree_state = std::map<std::string, file_status>;

  // Notes in `fault` what cannot be looked at.
  tree_state look(std::string& fault) const;
  std::set<std::string> empty_directories() const;
  receipt head() const;
  void add_entries(receipt& made, const tree_state& after) const;
  bool add_earlier(receipt& made, const std::string& registry) const;

  const product_plan& product_;
  descriptor directory_;
  std::set<std::string> own_;      // paths that archive and configurator fill
  std::set<std::string> written_;  // by the configurator, where it was started in that directory
  tree_state before_;
  std::string fault_before_;
  std::set<std::string> empty_before_;
  std::uint64_t began_ = 0;
};

}  // namespace morvane

#endif  // MORVANE_INSTALL_PRODUCT_RECEIPT_H
