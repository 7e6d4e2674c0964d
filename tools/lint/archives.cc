#include "lint/archives.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "archive/archive_reader.h"
#include "archive/tar_listing.h"
#include "lint/archive_tree.h"
#include "lint/makefile_targets.h"
#include "lint/sense.h"
#include "text/number.h"
#include "text/white_space.h"
#include "text/words.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;
using path_parts = std::vector<string_view>;

// What every system opens.
constexpr std::size_t LONGEST_NAME = 1023;
constexpr std::size_t LONGEST_PART = 255;

// What the names and the environment of one command share with the names of an archive's members.
constexpr std::size_t OTHER_ARGUMENTS = 131'072;
constexpr std::size_t BYTES_BESIDE_A_NAME = 9;  // its end and the pointer to it

constexpr unsigned SET_ID_BITS = 06000;

constexpr string_view MAKEFILE = "install/Makefile";
constexpr std::array<string_view, 4> COPIED_FILES = {"morvane.rsc", "morvane.SunOS4",
                                                     "morvane.SunOS5", "Makefile"};

string joined(const path_parts& parts) {
  string path;
  for (const string_view part : parts) {
    if (!path.empty()) path += '/';
    path += part;
  }
  return path;
}

// Tells whether tar lists such a name otherwise than it is, or cut and the shell take it apart.
bool is_not_handed_on(string_view name) {
  return std::ranges::any_of(name, [](char c) {
    return c <= ' ' || c > '~' || string_view("\\*?[").find(c) != string_view::npos;
  });
}

bool is_file(member_kind kind) {
  return kind == member_kind::FILE || kind == member_kind::HARD_LINK;
}

// Checks the members of one archive.
class member_checks {
 public:
  member_checks(const string& identifier, const string& file, const archive_content& content,
                finding_list& findings)
      : identifier_(identifier), file_(file), content_(content), findings_(findings) {}

  void check() {
    std::vector<const archive_member*> laid_out;
    for (const archive_member& member : content_.members) {
      if (has_usable_name(member)) laid_out.push_back(&member);
    }
    for (const archive_member* member : laid_out) tree_.add(*member);
    for (const archive_member* member : laid_out) {
      check_member(*member);
      tree_.find(parts_of_name(member->name))->seen = member;
    }
    check_amount();
  }

 private:
  void add(check_id id, const archive_member& member, const string& text) {
    findings_.add(id, file_, WHOLE_FILE, quoted(member.name) + ": " + text);
  }

  bool has_usable_name(const archive_member& member) {
    const string& name = member.name;
    const path_parts parts = parts_of_name(name);
    const bool too_long =
        name.size() > LONGEST_NAME ||
        std::ranges::any_of(parts, [](string_view part) { return part.size() > LONGEST_PART; });
    if (too_long) {
      findings_.add("member-name", file_, WHOLE_FILE,
                    quoted(name.substr(0, LONGEST_PART)) +
                        "...: a name that is too long for some systems: shorten it");
    } else if (name.empty()) {
      findings_.add("member-name", file_, WHOLE_FILE,
                    "a member without a name, or with one that is no UTF-8: rename it");
    } else if (name.starts_with('/')) {
      add("member-absolute", member,
          "an absolute name: the file outside would be given away; pack with 'tar -C TREE .'");
    } else if (std::ranges::find(parts, "..") != parts.end()) {
      add("member-outside", member, "a name that leads out of the tree: pack with 'tar -C TREE .'");
    } else if (is_not_handed_on(name)) {
      add("member-name", member,
          "a name that tar and the shell do not hand on as it is: rename the file, or let a part "
          "make it");
    } else if (name.starts_with('-')) {
      add("member-name", member,
          "a name that chown takes for an option: pack with 'tar -C TREE .'");
    } else {
      return true;
    }
    return false;
  }

  // Says the first thing that is wrong.
  void check_member(const archive_member& member) {
    const path_parts path = parts_of_name(member.name);
    tree_place& place = *tree_.find(path);
    if (member.kind == member_kind::OTHER) {
      add("member-kind", member, "neither a file, a directory nor a link: let a part make it");
    } else if (is_file(member.kind) && (member.mode & SET_ID_BITS) != 0) {
      add("member-set-id", member,
          "set-id bits, which the change of owner clears: let a part set them");
    } else if (const string file = file_above(path); !file.empty()) {
      add("member-below-file", member, "lies below " + quoted(file) + ", which is no directory");
    } else if ((path.empty() || path == path_parts{"install"}) &&
               member.kind != member_kind::DIRECTORY) {
      add("member-no-directory", member, "must be a directory, for description and settings");
    } else if (is_replaced(path)) {
      add("member-replaced", member, "the installation puts a file of its own there: rename it");
    } else if (place.seen != nullptr && (place.seen->kind != member.kind || is_link(member.kind))) {
      add("member-twice", member,
          "stands there twice, and not both times as a file or as a directory: pack it again");
    } else if (member.kind == member_kind::HARD_LINK && !links_to_file(member)) {
      add("hard-link-astray", member,
          "a hard link to " + quoted(member.target) +
              ", which is no file that stands before it: pack it again");
    } else if (place.kind() == member_kind::LINK) {
      const string_view why = tree_.astray(place);
      if (!why.empty()) {
        add("link-astray", member,
            "a link to " + quoted(place.member->target) + " that " + string(why) +
                ": chown and chmod follow it; link within the tree, or let a part make it");
      }
    }
  }

  static bool is_link(member_kind kind) {
    return kind == member_kind::LINK || kind == member_kind::HARD_LINK;
  }

  // Returns what lies above `path` and is no directory, if anything.
  string file_above(const path_parts& path) {
    tree_place* here = &tree_.top();
    path_parts above;
    for (const string_view part : path) {
      if (here->kind() != member_kind::DIRECTORY) return above.empty() ? "." : joined(above);
      above.push_back(part);
      here = here->below.find(part)->second;
    }
    return "";
  }

  bool is_replaced(const path_parts& path) const {
    if (path.size() == 1) {
      return std::ranges::find(COPIED_FILES, path[0]) != COPIED_FILES.end();
    }
    if (path.size() != 2 || path[0] != "install") return false;
    return path[1] == identifier_ + ".descr" || path[1] == identifier_ + ".dat" ||
           path[1] == identifier_ + ".make";
  }

  bool links_to_file(const archive_member& member) {
    if (member.target.starts_with('/')) return false;
    const tree_place* linked = tree_.find(parts_of_name(member.target));
    return linked != nullptr && linked->seen != nullptr && is_file(linked->seen->kind);
  }

  void check_amount() {
    std::size_t bytes = OTHER_ARGUMENTS;
    for (const archive_member& member : content_.members) {
      bytes += member.name.size() + BYTES_BESIDE_A_NAME;
    }
    const long most = sysconf(_SC_ARG_MAX);
    if (most > 0 && bytes > static_cast<std::size_t>(most)) {
      findings_.add("archive-names", file_, WHOLE_FILE,
                    "its " + std::to_string(content_.members.size()) +
                        " names are more than one command can take: pack fewer files");
    }
  }

  const string& identifier_;
  const string& file_;
  const archive_content& content_;
  finding_list& findings_;
  archive_tree tree_;
};

// What is kept of an archive while the others are looked at: no more than its names.
struct archived_product {
  const distributed_product* product;
  std::set<string> files;  // and links
  bool readable = false;
};

// Checks the archives of a distribution.
class archive_checks {
 public:
  archive_checks(const distribution& looked_at, finding_list& findings)
      : distribution_(looked_at), findings_(findings) {}

  void check() {
    for (const distributed_product& product : distribution_.products) {
      if (product.archive) check_archive(product);
    }
    check_shared_files();
    for (const archived_product& archived : archived_) check_needed_files(*archived.product);
  }

 private:
  void add(check_id id, const distributed_product& product, const string& text) {
    findings_.add(id, *product.archive, WHOLE_FILE, text);
  }

  void check_archive(const distributed_product& product) {
    tar_listing listing(*product.archive);
    const archive_content content = read_archive(*product.archive, MAKEFILE);
    if (content.fault) report_fault(product, *content.fault, content.reason);
    archived_product& archived =
        archived_.emplace_back(archived_product{&product, {}, !content.fault});
    member_checks(product.identifier, *product.archive, content, findings_).check();
    for (const archive_member& member : content.members) {
      if (is_file(member.kind) || member.kind == member_kind::LINK) {
        archived.files.insert(joined(parts_of_name(member.name)));
      }
    }
    if (content.fault) return;
    if (const string difference = listing.difference_from(content.members); !difference.empty()) {
      add("archive-ambiguous", product,
          "the archive can be read in two ways: " + printable(difference) + "; pack it again");
    }
    if (content.members.empty()) {
      add("archive-empty", product, "the archive holds nothing, for which the installation fails");
    }
    check_parts(product, content);
  }

  void report_fault(const distributed_product& product, archive_fault fault, const string& reason) {
    switch (fault) {
      case archive_fault::CANNOT_BE_OPENED:
        add("archive-unreadable", product, "the archive cannot be opened: " + reason);
        break;
      case archive_fault::EMPTY_FILE:
        add("archive-empty", product, "the file is empty, for which the installation fails");
        break;
      case archive_fault::COMPRESSED:
        add("archive-compressed", product,
            "the archive is compressed with " + reason + ": unpack it first");
        break;
      case archive_fault::NOT_READABLE:
        add("archive-unreadable", product,
            "this is no tar archive that can be read: " + reason + "; pack it again");
        break;
      case archive_fault::NO_END:
        add("archive-unreadable", product,
            "the archive has no end, and may be cut off: pack it again");
        break;
      case archive_fault::TOO_MANY:
        add("archive-names", product,
            "it holds more names than any command can take: the rest was not looked at");
        break;
    }
  }

  void check_parts(const distributed_product& product, const archive_content& content) {
    const read_description& description = product.description;
    if (description.record.target_dep[0] == nullptr) return;
    if (!content.wanted) {
      findings_.add("makefile-missing", description.file, description.parts[0].place,
                    *product.archive + " holds no install/Makefile, which is to make part " +
                        quoted(description.record.target_dep[0]->target) +
                        ": the installation fails there; add it, or remove the parts");
      return;
    }
    const makefile_targets targets = targets_of(*content.wanted);
    const bool whole = content.wanted->size() < MOST_CONTENT && !targets.hides_some;
    for (std::size_t i = 0; i < TARGETS && description.record.target_dep[i] != nullptr; ++i) {
      const string part(description.record.target_dep[i]->target);
      if (targets.names.contains(part)) continue;
      const string place = "install/Makefile of " + *product.archive;
      if (!whole) {
        findings_.add("part-hidden", description.file, description.parts[i].place,
                      "part " + quoted(part) + " is no target in " + place +
                          ", unless it is one that is included, or named by a pattern or variable");
      } else {
        findings_.add(
            "part-without-target", description.file, description.parts[i].place,
            "part " + quoted(part) + " is no target in " + place +
                (targets.phony.contains(part)
                     ? ", only phony: make reports success and does nothing; add a rule"
                     : ": the installation fails there; add a rule, or correct the name"));
      }
    }
  }

  // Products that propose one path, levels of one product left out.
  void check_shared_files() {
    for (std::size_t i = 0; i < archived_.size(); ++i) {
      const product& record = archived_[i].product->description.record;
      if (record.path.empty()) continue;
      for (std::size_t k = 0; k < i; ++k) {
        const product& other = archived_[k].product->description.record;
        if (other.path == record.path && !are_levels_of_one(record, other)) {
          check_shared(archived_[k], archived_[i]);
        }
      }
    }
  }

  void check_shared(const archived_product& one, const archived_product& other) {
    std::vector<string> shared;
    std::ranges::set_intersection(one.files, other.files, std::back_inserter(shared));
    std::erase(shared, MAKEFILE);  // used up by each installation
    if (shared.empty()) return;
    add("files-shared", *other.product,
        quoted(shared[0]) +
            (shared.size() > 1 ? " and " + std::to_string(shared.size() - 1) + " more are"
                               : " is") +
            " also in " + *one.product->archive + ", and both products propose " +
            quoted(other.product->description.record.path) + ": the later one replaces it");
  }

  void check_needed_files(const distributed_product& product) {
    string category;
    string type;
    for (const located_entry& entry : product.description.entries) {
      if (entry.keyword == KEYWORD_NEEDS_CATEGORY) category = entry.value;
      if (entry.keyword == KEYWORD_NEEDS_TYPE) type = entry.value;
      if (entry.keyword != KEYWORD_NEEDS_FILES) continue;
      for (const string_view file : split_words(entry.value, WHITE_SPACE)) {
        if (file.starts_with('/') || can_have(category, type, file)) continue;
        findings_.add("needed-file-missing", product.description.file, entry.place,
                      quoted(file) + " is in no archive of a product of category " +
                          quoted(category) + " and type " + quoted(type) +
                          ", none of which has parts that could make it: correct the name");
      }
    }
  }

  // Tells whether a product of that category and type holds the file or may make it, or there is
  // none, of which another check tells.
  bool can_have(string_view category, string_view type, string_view file) const {
    bool some = false;
    for (const archived_product& archived : archived_) {
      const product& record = archived.product->description.record;
      if (record.category != category || record.type != type) continue;
      some = true;
      const bool may_make_it = !archived.readable || record.target_dep[0] != nullptr;
      if (may_make_it || archived.files.contains(joined(parts_of_name(file)))) return true;
      if (holds_directory(archived, joined(parts_of_name(file)) + "/")) return true;
    }
    return !some;
  }

  static bool holds_directory(const archived_product& archived, const string& directory) {
    const auto first = archived.files.lower_bound(directory);
    return first != archived.files.end() && first->starts_with(directory);
  }

  const distribution& distribution_;
  finding_list& findings_;
  std::vector<archived_product> archived_;
};

}  // namespace

void check_archives(const distribution& looked_at, finding_list& findings) {
  archive_checks(looked_at, findings).check();
}

}  // namespace morvane
