#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <set>
#include <utility>

#include "installed/claims.h"
#include "tree/digest.h"
#include "tree/directory.h"
#include "tree/walk.h"
#include "verify/afterwards.h"

namespace morvane {

namespace {

constexpr std::int64_t NANOSECONDS = 1'000'000'000;

// Looks at what lies around the files of one product.
class surveyor {
 public:
  surveyor(receipt& made, const receipt_store& store)
      : made_(made), neighbours_(store, made), directory_(open_directory(made.directory)) {
    const descriptor makefile =
        open_file_below(directory_, std::string(INSTALL_DIRECTORY) + "/" + made.id + ".make");
    const auto status = makefile.is_open() ? status_of(makefile) : std::nullopt;
    if (status && !made.parts.empty()) prepared_ = status->modified;
    is_readable_ = status || errno == ENOENT;
  }

  bool survey() {
    if (!directory_.is_open() || !is_readable_) return false;
    const walked_tree tree = walk(directory_);
    if (!tree.faults.empty()) {
      errno = tree.faults.front().error;
      return false;
    }
    for (const tree_file& file : tree.files) {
      if (!is_known(file.path) && !take(file)) return false;
    }
    for (receipt_entry& entry : made_.entries) {
      if (entry.kind != file_kind::DIRECTORY || strange_.contains(entry.path)) continue;
      entry.before = entry.path == "." ? before::EMPTY : before::NOTHING;
    }
    made_.entries.insert(made_.entries.end(), perhaps_.begin(), perhaps_.end());
    std::ranges::sort(made_.entries, {}, &receipt_entry::path);
    return true;
  }

 private:
  bool is_known(const std::string& path) const {
    if (find_entry(made_, path) != nullptr) return true;
    receipt_entry entry;
    entry.path = path;
    const std::string absolute = absolute_path(made_, entry);
    return absolute == file_beside(made_) || neighbours_.know(absolute);
  }

  // Takes what may have been made by a part; else it tells that its directories were there before.
  bool take(const tree_file& file) {
    receipt_entry entry = entry_of(file.path, file.status);
    entry.before = before::UNKNOWN;
    entry.origin = entry_origin::PERHAPS;
    const bool in_time = prepared_ && file.status.changed / NANOSECONDS >= *prepared_;
    if (in_time) {
      if (!add_digest(entry)) return false;
      perhaps_.push_back(std::move(entry));
      return true;
    }
    std::string above = split(file.path).above;
    while (strange_.insert(above).second) above = split(above).above;
    return true;
  }

  bool add_digest(receipt_entry& entry) const {
    if (entry.kind != file_kind::FILE) return true;
    const descriptor file = open_file_below(directory_, entry.path);
    auto digest = file.is_open() ? digest_of_file(file, entry.size) : std::nullopt;
    if (digest) entry.digest = std::move(*digest);
    return digest.has_value();
  }

  receipt& made_;
  neighbours neighbours_;
  descriptor directory_;
  std::optional<std::int64_t> prepared_;  // when its makefile was, in seconds; only with parts
  bool is_readable_ = false;              // that makefile, or it is not there
  std::set<std::string> strange_;         // directories that hold something of nobody
  std::vector<receipt_entry> perhaps_;
};

}  // namespace

bool add_surroundings(receipt& made, const receipt_store& store) {
  return surveyor(made, store).survey();
}

}  // namespace morvane
