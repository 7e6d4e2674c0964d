#include "remove/remover.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include "installed/claims.h"
#include "remove/kept_files.h"
#include "tree/digest.h"
#include "tree/directory.h"

namespace morvane {

namespace {

std::string with_reason(const std::string& path, int error) {
  return path + ": " + std::strerror(error);
}

// The receipt lies in them.
bool holds_receipt(const receipt_entry& entry) {
  return entry.path == "." || entry.path == INSTALL_DIRECTORY;
}

bool stays_in_use(int error) {
  return error == ENOTEMPTY || error == EEXIST || error == EBUSY || error == EINVAL;
}

// Does the deeds of one plan.
class remover {
 public:
  remover(const removal& planned, receipt_store& store, const std::string& registry,
          const std::string& keep_in)
      : planned_(planned),
        receipt_(planned.product->content),
        store_(store),
        neighbours_(store, receipt_),
        registry_(registry),
        keep_in_(keep_in) {}

  removed_product remove() {
    const bool is_there = open_product();
    if (is_there) {
      for (const planned_path& path : planned_.paths) {
        if (!holds_receipt(*path.entry)) act(path);
      }
    }
    if (done_.faults.empty()) hand_on();
    if (done_.faults.empty()) take(drop_beside(receipt_));
    if (done_.faults.empty() && is_there) {
      for (const planned_path& path : planned_.paths) {
        if (holds_receipt(*path.entry)) act(path);
      }
    }
    if (done_.faults.empty()) take(drop_registered(receipt_, registry_));
    if (done_.faults.empty()) forget();
    return std::move(done_);
  }

 private:
  bool open_product() {
    product_ = open_directory(receipt_.directory);
    if (!product_.is_open() && errno != ENOENT && errno != ENOTDIR) {
      done_.faults.push_back(with_reason(receipt_.directory, errno));
    }
    return product_.is_open();
  }

  void act(const planned_path& path) {
    if (path.deed != deed::REMOVE && path.deed != deed::KEEP) return;
    const bool moved = path.deed == deed::KEEP;
    if (moved && (keep_in_.empty() || !can_be_moved(path))) return;
    if (!path.found.status || !enter(path.entry->path)) return;
    if (moved) {
      move(path);
    } else if (path.entry->kind == file_kind::DIRECTORY) {
      remove_directory(path);
    } else {
      remove_file(path);
    }
  }

  static bool can_be_moved(const planned_path& path) {
    return path.found.status && (path.found.status->kind == file_kind::FILE ||
                                 path.found.status->kind == file_kind::LINK);
  }

  // Opens the directory that a path lies in, and notes its name there. Returns false where it is
  // gone, and with it what lay there.
  bool enter(const std::string& path) {
    split_path place = split(path);
    if (path == ".") {
      place = split(receipt_.directory);
      directory_ = open_directory(place.above.empty() ? "/" : place.above);
      above_.reset();
    } else if (above_ != place.above) {
      directory_ = open_below(product_, place.above);
      above_ = place.above;
    }
    name_ = place.name;
    if (directory_.is_open()) return true;
    above_.reset();
    if (errno == ENOTDIR || errno == ELOOP) {
      done_.remarks.push_back("keeps " + with_reason(path, errno));
    } else if (errno != ENOENT) {
      done_.faults.push_back(with_reason(path, errno));
    }
    return false;
  }

  void remove_file(const planned_path& path) {
    const auto now = look();
    if (!now) return;
    if (!is_as_planned(path, *now)) {
      done_.remarks.push_back("keeps " + path.entry->path + ": it was changed just now");
    } else if (unlinkat(directory_.number(), name_.c_str(), 0) == 0) {
      done_.removed.push_back(path.entry);
    } else if (errno != ENOENT) {
      done_.faults.push_back(with_reason(path.entry->path, errno));
    }
  }

  // Returns what lies at the path that was entered; nothing where it is gone, or after a fault.
  std::optional<file_status> look() {
    auto now = look_at(directory_, name_);
    if (!now && errno != ENOENT) done_.faults.push_back(with_reason(name_, errno));
    return now;
  }

  // A hard link that was removed just now has changed the others: then the content tells.
  bool is_as_planned(const planned_path& path, const file_status& now) const {
    if (now == path.found.status) return true;
    file_status status = now;
    status.changed = path.found.status->changed;
    if (status != *path.found.status || status.kind != file_kind::FILE) return false;
    const descriptor file = open_file_below(directory_, name_);
    return file.is_open() && digest_of_file(file, path.entry->size) == path.entry->digest &&
           look_at(directory_, name_) == now;
  }

  void remove_directory(const planned_path& path) {
    const auto now = look();
    if (!now) return;
    const file_status& looked_at = *path.found.status;
    if (now->device != looked_at.device || now->inode != looked_at.inode) {
      done_.remarks.push_back("keeps " + path.entry->path + ": it was changed just now");
    } else if (unlinkat(directory_.number(), name_.c_str(), AT_REMOVEDIR) == 0) {
      done_.removed.push_back(path.entry);
    } else if (stays_in_use(errno)) {
      tell_what_is_in(*path.entry);
    } else if (errno != ENOENT) {
      done_.faults.push_back(with_reason(path.entry->path, errno));
    }
  }

  // What else lies in a directory that cannot be removed; what stays of the product was told of.
  void tell_what_is_in(const receipt_entry& entry) {
    const auto names = names_in(open_below(product_, entry.path));
    if (!names) done_.faults.push_back(with_reason(entry.path, errno));
    for (const std::string& name : names.value_or(std::vector<std::string>())) {
      receipt_entry below;
      below.path = entry.path == "." ? name : entry.path + "/" + name;
      if (find_entry(receipt_, below.path) != nullptr) continue;
      if (neighbours_.know(absolute_path(receipt_, below))) continue;
      done_.remarks.push_back("leaves " + below.path + ": it is not of the product");
    }
  }

  void move(const planned_path& path) {
    const std::string to = keep_in_ + "/" + receipt_.id + "/" + path.entry->path;
    const int error = move_file(directory_, name_, *path.found.status, to);
    if (error == 0) {
      done_.remarks.push_back("moved " + path.entry->path + " to " + to);
    } else {
      done_.faults.push_back("cannot be moved to " + with_reason(to, error));
    }
  }

  // Each receipt that is told of something is written once more.
  void hand_on() {
    for (stored_receipt& stored : store_.receipts) {
      if (&stored == planned_.product || !stored.trusted || stored.file.empty()) continue;
      if (!hand_on_to(stored.content)) continue;
      receipt kept = stored.content;
      const receipt_places places = keep_receipt(kept, registry_);
      const int error = places.beside != 0 || !stored.registered ? places.beside : places.registry;
      if (error != 0) done_.faults.push_back("the receipt of " + with_reason(kept.id, error));
    }
  }

  // A directory that the product made, and in which another has something, is the other's then.
  bool hand_on_directories(receipt& other) const {
    if (other.directory != receipt_.directory) return false;
    std::vector<receipt_entry> handed;
    for (const receipt_entry& entry : receipt_.entries) {
      if (entry.kind != file_kind::DIRECTORY || entry.before != before::NOTHING) continue;
      if (find_entry(other, entry.path) != nullptr) continue;
      const std::string below = entry.path + "/";
      const auto first = std::ranges::lower_bound(other.entries, below, {}, &receipt_entry::path);
      if (first != other.entries.end() && first->path.starts_with(below)) handed.push_back(entry);
    }
    other.entries.insert(other.entries.end(), handed.begin(), handed.end());
    std::ranges::sort(other.entries, {}, &receipt_entry::path);
    return !handed.empty();
  }

  // Tells another receipt what lay at paths before. Returns whether it learns anything.
  bool hand_on_to(receipt& other) const {
    bool learns = hand_on_directories(other);
    for (const receipt_entry& entry : receipt_.entries) {
      if (entry.before == before::THERE || entry.origin == entry_origin::PERHAPS) continue;
      for (const claim& same : neighbours_.claims_on(entry)) {
        if (same.by != &other || same.entry->before != before::THERE) continue;
        other.entries[static_cast<std::size_t>(same.entry - other.entries.data())].before =
            entry.before;
        learns = true;
      }
    }
    return learns;
  }

  // It has no receipt any more.
  void forget() {
    for (stored_receipt& stored : store_.receipts) {
      if (&stored == planned_.product) stored.file.clear();
    }
  }

  void take(int error) {
    if (error != 0) done_.faults.push_back(std::string("the receipt: ") + std::strerror(error));
  }

  const removal& planned_;
  const receipt& receipt_;
  receipt_store& store_;
  neighbours neighbours_;
  const std::string& registry_;
  const std::string& keep_in_;
  descriptor product_;
  descriptor directory_;              // of the path that is dealt with
  std::optional<std::string> above_;  // its path, where it lies below the product
  std::string name_;                  // of that path in it
  removed_product done_;
};

}  // namespace

removed_product remove(const removal& planned, receipt_store& store, const std::string& registry,
                       const std::string& keep_in) {
  return remover(planned, store, registry, keep_in).remove();
}

}  // namespace morvane
