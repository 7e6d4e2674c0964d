#include "verify/verification.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <deque>
#include <optional>
#include <utility>

#include "installed/claims.h"
#include "tree/directory.h"

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
    std::vector<claim> last;
    std::deque<receipt_entry> moved;  // entries of others, with the paths that they have here
    std::vector<const receipt_entry*> expected;
    for (const receipt_entry& entry : receipt_.entries) {
      last.push_back(neighbours_.last_on(entry));
      expected.push_back(last.back().entry);
      if (last.back().by == &receipt_) continue;
      moved.push_back(*last.back().entry);
      moved.back().path = entry.path;
      expected.back() = &moved.back();
    }
    std::vector<found_path> found = look_at_entries(directory, expected);
    for (std::size_t i = 0; i < found.size(); ++i) {
      if (!compare(*expected[i], found[i]).any()) continue;
      done_.differing.push_back({expected[i]->path, false, *expected[i], std::move(found[i]),
                                 last[i].by == &receipt_ ? "" : last[i].by->id});
    }
  }

  // Of a directory that is additional it tells, not of what it holds.
  void find_additional(const descriptor& product) {
    for (const receipt_entry& entry : receipt_.entries) {
      if (!is_own(entry)) continue;
      const descriptor directory = open_below(product, entry.path);
      const auto names = directory.is_open() ? names_in(directory) : std::nullopt;
      if (!names) {
        fail(entry.path);
        continue;
      }
      for (const std::string& name : *names) {
        const std::string path = entry.path == "." ? name : entry.path + "/" + name;
        if (!is_known(path)) add(directory, name, path);
      }
    }
  }

  void add(const descriptor& directory, const std::string& name, const std::string& path) {
    found_path found;
    found.status = look_at(directory, name);
    if (!found.status) return fail(path);
    done_.differing.push_back({path, true, {}, std::move(found), ""});
  }

  // What is gone, or no directory any more, was told of already.
  void fail(const std::string& path) {
    if (errno == ENOENT || errno == ENOTDIR || errno == ELOOP) return;
    done_.faults.push_back(path + ": " + std::strerror(errno));
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
