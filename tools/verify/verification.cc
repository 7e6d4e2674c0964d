#include "verify/verification.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "installed/claims.h"
#include "tree/directory.h"
#include "tree/walk.h"

namespace morvane {

namespace {

// Tells whether all that lies in a directory of the receipt should be known: nothing lay in it
// before the product came.
bool is_own(const receipt_entry& entry) {
  return entry.kind == file_kind::DIRECTORY &&
         (entry.before == before::NOTHING || entry.before == before::EMPTY);
}

class verifier {
 public:
  verifier(const receipt_store& store, const stored_receipt& product)
      : receipt_(product.content), neighbours_(store, receipt_) {
    done_.product = &product;
    done_.paths = receipt_.entries.size();
  }

  verification verify() {
    const descriptor directory = open_directory(receipt_.directory);
    compare_entries(directory);
    if (directory.is_open()) find_additional(directory);
    std::ranges::sort(done_.differing, {}, &verified_path::path);
    return std::move(done_);
  }

 private:
  void compare_entries(const descriptor& directory) {
    std::vector<receipt_entry> expected;
    std::vector<std::string> others;
    for (const receipt_entry& entry : receipt_.entries) {
      const claim last = neighbours_.last_on(entry);
      expected.push_back(*last.entry);
      expected.back().path = entry.path;
      others.push_back(last.by == &receipt_ ? "" : last.by->id);
    }
    std::vector<const receipt_entry*> looked_at;
    for (const receipt_entry& entry : expected) looked_at.push_back(&entry);
    const std::vector<found_path> found = look_at_entries(directory, looked_at);
    for (std::size_t i = 0; i < found.size(); ++i) {
      if (!compare(expected[i], found[i]).any()) continue;
      done_.differing.push_back({expected[i].path, false, expected[i], found[i], others[i]});
    }
  }

  // Enters directories that are known; of one that is additional it tells, not of what it holds.
  void find_additional(const descriptor& directory) {
    const receipt_entry* top = find_entry(receipt_, ".");
    const walked_tree tree = walk(directory, [&](const tree_file& file) {
      return find_entry(receipt_, file.path) != nullptr;
    });
    for (const tree_file& file : tree.files) {
      const std::string above = split(file.path).above;
      const receipt_entry* holder = above == "." ? top : find_entry(receipt_, above);
      if (holder == nullptr || !is_own(*holder) || is_known(file.path)) continue;
      found_path found;
      found.status = file.status;
      done_.differing.push_back({file.path, true, {}, std::move(found), ""});
    }
    for (const tree_fault& fault : tree.faults) {
      done_.faults.push_back(fault.path + ": " + std::strerror(fault.error));
    }
  }

  bool is_known(const std::string& path) const {
    if (find_entry(receipt_, path) != nullptr) return true;
    receipt_entry entry;
    entry.path = path;
    const std::string absolute = absolute_path(receipt_, entry);
    return absolute == file_beside(receipt_) || neighbours_.know(absolute);
  }

  const receipt& receipt_;
  neighbours neighbours_;
  verification done_;
};

}  // namespace

verification verify(const receipt_store& store, const stored_receipt& product) {
  return verifier(store, product).verify();
}

}  // namespace morvane
