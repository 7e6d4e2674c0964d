#include "remove/removal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>

#include "installed/claims.h"
#include "report/finding.h"
#include "tree/directory.h"

namespace morvane {

namespace {

bool is_patch_of(const receipt& patch, const receipt& original) {
  return patch.directory == original.directory &&
         std::ranges::find(patch.originals, original.id) != patch.originals.end();
}

bool is_same_content(const receipt_entry& a, const receipt_entry& b) {
  return a.kind == b.kind && a.digest == b.digest && a.target == b.target;
}

// Decides about the paths of one product.
class planner {
 public:
  planner(const receipt_store& store, const stored_receipt& product, const product_set& removed)
      : receipt_(product.content), neighbours_(store, receipt_), removed_(removed) {
    planned_.product = &product;
  }

  removal plan() {
    std::vector<const receipt_entry*> entries;
    for (const receipt_entry& entry : receipt_.entries) entries.push_back(&entry);
    const descriptor directory = open_directory(receipt_.directory);
    if (!directory.is_open()) {
      if (errno != ENOENT && errno != ENOTDIR) {
        planned_.faults.push_back(receipt_.directory + ": " + std::strerror(errno));
      }
      return std::move(planned_);
    }
    std::vector<found_path> found = look_at_entries(directory, entries);
    for (std::size_t i = entries.size(); i-- > 0;) {  // what lies below a directory comes before it
      planned_path path;
      path.entry = entries[i];
      path.found = std::move(found[i]);
      decide(path);
      planned_.paths.push_back(std::move(path));
    }
    return std::move(planned_);
  }

 private:
  void decide(planned_path& path) {
    const receipt_entry& entry = *path.entry;
    const bool is_directory = entry.kind == file_kind::DIRECTORY;
    // A directory is as the last product left it.
    const receipt_entry& expected = is_directory ? *neighbours_.last_on(entry).entry : entry;
    const difference differs = compare(expected, path.found);
    if (differs.unknown)
      planned_.faults.push_back(entry.path + ": " + words_of(expected, path.found));
    if (differs.missing || is_up_to_another(entry)) return;
    if (const receipt* other = who_else_has(entry)) {
      path.deed = deed::LEAVE;
      // Of a directory nobody expects that it goes while others have something in it.
      if (!is_directory || differs.any()) path.why = "'" + other->id + "' has it too";
      if (differs.any()) path.why += "; " + words_of(expected, path.found);
    } else if (entry.origin == entry_origin::PERHAPS) {
      path.deed = deed::LEAVE;
      path.why = "perhaps not of the product";
    } else if (differs.any()) {
      path.deed = deed::KEEP;
      path.why = words_of(expected, path.found);
    } else if (entry.kind == file_kind::DIRECTORY && !is_ours(entry)) {
      path.deed = deed::LEAVE;
      if (entry.before == before::UNKNOWN) path.why = "perhaps it was there before";
    } else {
      path.deed = deed::REMOVE;
      path.why = remark_on(entry);
    }
  }

  // What lies there was put there later by another product that goes, too.
  bool is_up_to_another(const receipt_entry& entry) const {
    const auto claims = neighbours_.claims_on(entry);
    return entry.kind != file_kind::DIRECTORY &&
           std::ranges::any_of(claims, [&](const claim& other) {
             return removed_.contains(other.by) &&
                    time_of(*other.by, *other.entry) > time_of(receipt_, entry);
           });
  }

  // Tells whether a directory was made by the product, or by another one that goes, too.
  bool is_ours(const receipt_entry& entry) const {
    if (entry.before == before::NOTHING) return true;
    const auto claims = neighbours_.claims_on(entry);
    return std::ranges::any_of(claims, [&](const claim& other) {
      return removed_.contains(other.by) && other.entry->before == before::NOTHING;
    });
  }

  // Returns a product that stays and has the path, or null. The files that a patch has put into the
  // place of its original's go with the patch.
  const receipt* who_else_has(const receipt_entry& entry) const {
    for (const claim& other : neighbours_.claims_on(entry)) {
      if (removed_.contains(other.by)) continue;
      if (!replaces(entry, other)) return other.by;
    }
    return nullptr;
  }

  bool replaces(const receipt_entry& entry, const claim& other) const {
    return entry.kind != file_kind::DIRECTORY && is_patch_of(receipt_, *other.by) &&
           !is_same_content(entry, *other.entry) &&
           time_of(receipt_, entry) > time_of(*other.by, *other.entry);
  }

  std::string remark_on(const receipt_entry& entry) const {
    for (const claim& other : neighbours_.claims_on(entry)) {
      if (!removed_.contains(other.by) && replaces(entry, other)) {
        return "it replaced the file of '" + other.by->id + "', which is gone: install '" +
               other.by->id + "' again";
      }
    }
    const bool was_strange = neighbours_.claims_on(entry).empty();
    if (entry.kind == file_kind::FILE && entry.before == before::THERE && was_strange) {
      return "it replaced a file that is gone";
    }
    return "";
  }

  const receipt& receipt_;
  neighbours neighbours_;
  const product_set& removed_;
  removal planned_;
};

}  // namespace

removal plan_removal(const receipt_store& store, const stored_receipt& product,
                     const product_set& removed) {
  return planner(store, product, removed).plan();
}

std::string counted_kinds(const std::vector<const receipt_entry*>& entries) {
  constexpr std::array<std::array<std::string_view, 2>, 4> WORDS = {
      {{"file", "files"}, {"directory", "directories"}, {"link", "links"}, {"other", "others"}}};
  std::string text;
  for (std::size_t kind = 0; kind < WORDS.size(); ++kind) {
    const auto count = std::ranges::count_if(entries, [&](const receipt_entry* entry) {
      return static_cast<std::size_t>(entry->kind) == kind;
    });
    if (count == 0) continue;
    text += (text.empty() ? "" : ", ") + std::to_string(count) + " ";
    text += WORDS[kind][count == 1 ? 0 : 1];
  }
  return text.empty() ? "nothing" : text;
}

std::string line_of(const planned_path& path) {
  constexpr std::array<std::string_view, 4> VERBS = {"removes", "keeps", "leaves", ""};
  return "  " + std::string(VERBS[static_cast<std::size_t>(path.deed)]) + " " +
         printable(path.entry->path + ": " + path.why) + "\n";
}

std::string text_of(const removal& planned) {
  const receipt& of = planned.product->content;
  std::vector<const receipt_entry*> removed;
  std::string lines;
  for (auto path = planned.paths.rbegin(); path != planned.paths.rend(); ++path) {
    if (path->deed == deed::REMOVE) removed.push_back(path->entry);
    if (!path->why.empty()) lines += line_of(*path);
  }
  const bool leaves_itself = !planned.paths.empty() && planned.paths.back().entry->path == "." &&
                             planned.paths.back().deed == deed::LEAVE;
  return printable(of.id + (of.version.empty() ? "" : " " + of.version) + " in " + of.directory) +
         ": removes " + counted_kinds(removed) +
         (leaves_itself ? ", leaves the directory itself" : "") + "\n" + lines;
}

}  // namespace morvane
