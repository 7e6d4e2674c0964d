#include "install/product_receipt.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "catalogue/product_files.h"
#include "install/product_plan.h"
#include "installed/originals.h"
#include "receipt/receipt_store.h"
#include "tree/digest.h"
#include "tree/directory.h"
#include "tree/walk.h"

namespace morvane {

namespace {

using std::string;

constexpr const char* TOP = ".";

string digest_of_path(const string& path) {
  const descriptor file = open_for_reading(path);
  return file.is_open() ? digest_of_file(file).value_or("") : "";
}

// Tells whether a file holds something else than before, or is another one. What merely got another
// owner or mode is not what a part made.
bool is_changed(const file_status& before, const file_status& after) {
  const bool same_time =
      before.modified == after.modified && before.modified_fraction == after.modified_fraction;
  return before.inode != after.inode || before.kind != after.kind || before.size != after.size ||
         before.target != after.target || (!same_time && after.kind != file_kind::DIRECTORY);
}

// Puts the digests of its files into a receipt. Returns the path of one that cannot be read, or was
// changed meanwhile; empty where there is none.
string add_digests(receipt& made, const descriptor& directory) {
  std::vector<receipt_entry*> entries;
  std::vector<sized_file> files;
  for (receipt_entry& entry : made.entries) {
    if (entry.kind != file_kind::FILE) continue;
    entries.push_back(&entry);
    files.push_back({entry.path, entry.size});
  }
  const auto digests = digests_below(directory, files);
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (!digests[i]) return files[i].path;
    entries[i]->digest = *digests[i];
  }
  return "";
}

string directory_of(const product_facts& facts) {
  return normal_path(facts.path).value_or(facts.path);
}

// What another user can have written is not made one's own word.
std::optional<stored_receipt> earlier_receipt(const product_facts& facts, const string& registry) {
  receipt_store store;
  add_registered(store, registry);
  add_beside(store, directory_of(facts));
  const stored_receipt* stored = find_trusted(store, facts.id, directory_of(facts));
  return stored == nullptr ? std::nullopt : std::optional(*stored);
}

// Returns what went wrong where a receipt was to be kept; empty where nothing did.
string trouble_of(const receipt_places& places, const receipt& of, const string& registry) {
  if (places.beside != 0) return of.directory + ": " + std::strerror(places.beside);
  // An ordinary user has none.
  if (places.registry != 0 && geteuid() == 0)
    return registry + ": " + std::strerror(places.registry);
  return "";
}

}  // namespace

string mark_incomplete(const product_facts& facts, const string& registry) {
  auto earlier = earlier_receipt(facts, registry);
  if (!earlier) return "";
  receipt& marked = earlier->content;
  marked.complete = false;
  receipt_places places;  // only where it lies: make is to find the directory as it was
  if (earlier->beside) places.beside = keep_beside(marked);
  if (earlier->registered) places.registry = keep_registered(marked, registry);
  return trouble_of(places, marked, registry);
}

product_receipt::product_receipt(const product_plan& product)
    : product_(product),
      directory_(open_directory(product.facts.path)),
      own_(product.extracted.begin(), product.extracted.end()),
      began_(time_now()) {
  own_.insert(product.copied.begin(), product.copied.end());
  own_.insert(TOP);
  if (is_same_file(product.facts.path, ".")) {
    written_.insert({"install.mk", settings_file(product.facts.id)});
    own_.insert(written_.begin(), written_.end());
  }
  before_ = look(fault_before_);
  empty_before_ = empty_directories();
}

// The whole directory is looked at only where parts may have made anything in it.
product_receipt::tree_state product_receipt::look(string& fault) const {
  tree_state state;
  const auto note = [&](const string& path, int error) {
    fault = path_of(product_.facts, path) + ": " + std::strerror(error);
  };
  if (!directory_.is_open()) return state;
  if (!product_.facts.targets.empty()) {
    walked_tree walked = walk(directory_);
    for (tree_file& file : walked.files) {
      state.emplace(std::move(file.path), std::move(file.status));
    }
    for (const tree_fault& each : walked.faults) note(each.path, each.error);
  } else {
    for (const string& path : own_) {
      const split_path at = split(path);
      const descriptor above = open_below(directory_, at.above);
      const auto status = above.is_open() ? look_at(above, at.name) : std::nullopt;
      if (status) {
        state.emplace(path, *status);
      } else if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) {
        note(path, errno);
      }
    }
  }
  if (const auto top = status_of(directory_)) state.insert_or_assign(TOP, *top);
  return state;
}

std::set<string> product_receipt::empty_directories() const {
  std::set<string> empty;
  for (const string& path : own_) {
    const auto there = before_.find(path);
    if (there == before_.end() || there->second.kind != file_kind::DIRECTORY) continue;
    const descriptor opened = open_below(directory_, path);
    const auto names = opened.is_open() ? names_in(opened) : std::nullopt;
    if (names && names->empty()) empty.insert(path);
  }
  return empty;
}

receipt product_receipt::head() const {
  const product_facts& facts = product_.facts;
  const product_settings& settings = product_.settings;
  receipt made;
  made.id = facts.id;
  made.name = settings.name.empty() ? facts.shown_name : settings.name;
  made.version = settings.version;
  made.directory = directory_of(facts);
  made.owner = facts.owner;
  made.group = facts.group;
  made.access = !facts.closed;
  made.installed = began_;
  made.configured = time_now();
  if (facts.is_new) made.archive = digest_of_path(facts.id + string(ARCHIVE_ENDING));
  if (facts.described) {
    made.description = digest_of_path(description_file(facts.id));
    made.originals = originals_of(made.directory, made.id);
  }
  made.parts = facts.targets;
  for (const settled_need& need : settings.needs) {
    made.needs.push_back({need.category, need.directory, need.name, need.version});
  }
  return made;
}

void product_receipt::add_entries(receipt& made, const tree_state& after) const {
  const std::set<string> copied(product_.copied.begin(), product_.copied.end());
  const string settings = "install/" + settings_file(product_.facts.id);
  for (const auto& [path, status] : after) {
    const auto earlier = before_.find(path);
    const bool is_new = earlier == before_.end() || written_.contains(path);
    if (!own_.contains(path) && !is_new && !is_changed(earlier->second, status)) continue;
    receipt_entry& entry = made.entries.emplace_back(entry_of(path, status));
    entry.before = is_new                         ? before::NOTHING
                   : empty_before_.contains(path) ? before::EMPTY
                                                  : before::THERE;
    if (path == settings || written_.contains(path)) {
      entry.origin = entry_origin::SETTINGS;
    } else if (copied.contains(path) || path == TOP) {
      entry.origin = entry_origin::CONFIGURATOR;
    } else {
      entry.origin = own_.contains(path) ? entry_origin::ARCHIVE : entry_origin::PART;
    }
  }
}

// Takes over what the receipt of an earlier installation there tells, if there is one.
bool product_receipt::add_earlier(receipt& made, const string& registry) const {
  const auto stored = earlier_receipt(product_.facts, registry);
  if (!stored) return false;
  const receipt& earlier = stored->content;
  if (!product_.facts.is_new) {
    made.installed = earlier.installed;
    made.archive = earlier.archive;
    made.description = earlier.description;
  }
  carry_over(made, earlier);
  return true;
}

string product_receipt::keep(const string& registry) const {
  receipt made = head();
  string fault = fault_before_;
  add_entries(made, look(fault));
  if (!fault.empty()) return fault;
  const string unread = add_digests(made, directory_);
  if (!unread.empty()) {
    return path_of(product_.facts, unread) + " cannot be read, or was changed meanwhile";
  }
  if (!add_earlier(made, registry) && !product_.facts.is_new) {
    return "";  // what its archive put there is not known: the plan has told
  }
  return trouble_of(keep_receipt(made, registry), made, registry);
}

}  // namespace morvane
