#include "install/product_plan.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "archive/archive_reader.h"
#include "install/archived_contents.h"
#include "install/handing_on.h"
#include "lint/archive_tree.h"
#include "lint/checked_archive.h"
#include "lint/finding_list.h"
#include "platform/file.h"
#include "platform/trusted_path.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

constexpr std::uint64_t BLOCK = 4096;

// What lint finds in an archive and make does not stumble over; links are looked at on the disk.
constexpr std::array<string_view, 2> HARMLESS = {"member-set-id", "member-replaced"};
constexpr string_view LINK_ASTRAY = "link-astray";

// Returns nothing where it is more than `most` bytes, too.
std::optional<string> content_of(const string& path, std::size_t most = string::npos) {
  const descriptor file = open_for_reading(path);
  return file.is_open() ? read_rest(file, most) : std::nullopt;
}

// Returns all places of a tree but its top, with their paths.
std::map<string, tree_place*> places_in(archive_tree& tree) {
  std::map<string, tree_place*> places;
  std::vector<std::pair<string, tree_place*>> left = {{"", &tree.top()}};
  while (!left.empty()) {
    const auto [path, place] = left.back();
    left.pop_back();
    for (const auto& [name, below] : place->below) {
      const string path_below = (path.empty() ? "" : path + "/") + string(name);
      places.emplace(path_below, below);
      left.emplace_back(path_below, below);
    }
  }
  return places;
}

class product_planner {
 public:
  product_planner(const product_facts& facts, std::vector<plan_finding>& findings)
      : facts_(facts), findings_(findings) {
    plan_.facts = facts;
  }

  product_plan plan() {
    if (facts_.described)
      plan_.settings = read_settings(content_of(settings_file(facts_.id)).value_or(""));
    if (facts_.is_new) lay_out_archive();
    lay_out_copies();
    check_makefile_of_parts();
    find_given_away();
    check_open_directories();
    for (auto* list : {&plan_.added, &plan_.added_directories, &plan_.renewed, &plan_.replaced}) {
      std::ranges::sort(*list);
    }
    return std::move(plan_);
  }

 private:
  void find(severity how, string_view id, const string& text) {
    findings_.push_back({how, string(id), facts_.id, text});
  }

  // Returns what lies at a path below the product's directory; links are not followed.
  std::optional<mode_t> kind_at(const string& path) const {
    struct stat status;
    if (lstat(path_of(facts_, path).c_str(), &status) != 0) return std::nullopt;
    return status.st_mode & S_IFMT;
  }

  void lay_out_archive() {
    const string file = facts_.id + ".tar";
    finding_list list;
    tar_listing listing(file);
    const archive_content content = read_checked_archive(facts_.id, file, listing, list);
    take_archive_findings(file, list.finish());
    makefile_ = content.wanted;
    archive_tree tree;
    for (const archive_member& member : content.members) tree.add(member);
    archived_contents contents(file, content.members);
    for (const auto& [path, place] : places_in(tree)) {
      if (path == PRODUCT_MAKEFILE) {
        if (kind_at(path)) plan_.replaced.push_back(path);
        continue;  // it is used up
      }
      plan_.extracted.push_back(path);
      if (place->kind() == member_kind::DIRECTORY) {
        lay_out_directory(path, place->member != nullptr);
      } else {
        lay_out_file(path, *place->member, contents);
      }
      if (place->kind() == member_kind::LINK) check_link(path, *place, tree);
    }
  }

  void take_archive_findings(const string& file, const std::vector<finding>& findings) {
    for (const finding& found : findings) {
      if (found.id == LINK_ASTRAY) continue;
      const bool harmless = std::ranges::find(HARMLESS, found.id) != HARMLESS.end();
      find(harmless ? severity::NOTE : severity::ERROR, found.id, file + ": " + found.text);
    }
  }

  void lay_out_directory(const string& path, bool is_member) {
    const auto there = kind_at(path);
    if (!there) {
      plan_.added_directories.push_back(path);
      plan_.bytes += BLOCK;
    } else if (S_ISLNK(*there)) {
      // tar puts a directory in its place where the archive names one, and else goes through it.
      find(severity::ERROR, "through-link",
           in_quotes(path_of(facts_, path)) + " is a link, which what the archive has below it " +
               (is_member ? "may go through" : "goes through") + ": take it away first");
    } else if (!S_ISDIR(*there)) {
      plan_.replaced.push_back(path);
    } else if (!cannot_be_redirected(path_of(facts_, path))) {
      open_to_others_.push_back(path);
    }
  }

  // Whoever can write to a directory can put a link in the place of what lies there, which make
  // then follows. Of the product's own directory it was told already.
  void check_open_directories() {
    if (open_to_others_.empty() || !cannot_be_redirected(facts_.path)) return;
    find(severity::WARNING, "directory-open",
         "others can write to " + std::to_string(open_to_others_.size()) +
             " of the directories that are there, such as " + in_quotes(open_to_others_[0]));
  }

  void lay_out_file(const string& path, const archive_member& member, archived_contents& contents) {
    const auto there = kind_at(path);
    plan_.bytes += (member.size + BLOCK - 1) / BLOCK * BLOCK;
    if (!there) {
      plan_.added.push_back(path);
    } else if (S_ISDIR(*there)) {
      find(severity::ERROR, "directory-there",
           in_quotes(path_of(facts_, path)) + " is a directory, and a file in the archive");
    } else if (contents.lie_at(path_of(facts_, path), member)) {
      plan_.renewed.push_back(path);
    } else {
      plan_.replaced.push_back(path);
    }
  }

  // Whoever changes owner, group and access of all that the archive names follows its links.
  void check_link(const string& path, tree_place& place, archive_tree& tree) {
    const string_view why = tree.astray(place);
    if (why.empty()) return;
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path top = fs::weakly_canonical(facts_.path, error);
    const fs::path link = fs::path(facts_.path) / path;
    const fs::path leads_to =
        fs::weakly_canonical(link.parent_path() / place.member->target, error);
    const fs::path below = error ? fs::path() : leads_to.lexically_relative(top);
    const bool outside = below.empty() || *below.begin() == "..";
    const bool is_there = fs::exists(leads_to, error) || tree.find(parts_of_name(below.native()));
    if (!outside && is_there) return;
    find(severity::ERROR, LINK_ASTRAY,
         in_quotes(path) + " is a link to " + in_quotes(place.member->target) + " that " +
             (outside ? "leads out of the product's directory: what lies there would get its "
                        "owner and group"
                      : "leads nowhere: chown and chgrp fail on it"));
  }

  void lay_out_copies() {
    if (facts_.described) {
      if (const auto there = kind_at("install"); there && !S_ISDIR(*there)) {
        find(severity::ERROR, "through-link",
             in_quotes(path_of(facts_, "install")) + " is no directory, which copies go into");
      }
      note_install_directory();
    }
    for (const string& file : facts_.files) {
      const bool at_top = std::ranges::find(INST_FILES, file) != INST_FILES.end();
      const auto content = content_of(file);
      if (!content) find(severity::ERROR, "file-missing", in_quotes(file) + " cannot be read");
      lay_out_copy(at_top ? file : "install/" + file, content);
    }
    lay_out_prepared_makefile("install/" + facts_.id + ".make");
  }

  void lay_out_prepared_makefile(const string& path) {
    if (!has_makefile() || (!facts_.is_new && kind_at(path))) return;
    std::optional<string> content;  // where it is made of a file that lies there, nobody can tell
    if (makefile_) content = "include " + settings_file(facts_.id) + "\n" + *makefile_;
    const std::size_t replaced = plan_.replaced.size();
    lay_out_copy(path, content);
    const bool is_same = kind_at(path) && plan_.replaced.size() == replaced;
    if (is_same) plan_.renewed.push_back(path);
  }

  void note_install_directory() {
    const bool extracted = std::ranges::find(plan_.extracted, "install") != plan_.extracted.end();
    if (!kind_at("install") && !extracted) plan_.added_directories.emplace_back("install");
    plan_.copied.emplace_back("install");
  }

  void lay_out_copy(const string& path, const std::optional<string>& content) {
    plan_.copied.push_back(path);
    const auto there = kind_at(path);
    if (!there) {
      plan_.added.push_back(path);
      plan_.bytes += BLOCK + content.value_or("").size();
    } else if (!S_ISREG(*there)) {
      find(severity::ERROR, "through-link",
           in_quotes(path_of(facts_, path)) +
               " is no file, which a copy would go into or through: " + "take it away first");
    } else if (!content || content_of(path_of(facts_, path), content->size()) != content) {
      plan_.replaced.push_back(path);
      check_names_of(path);
    }
  }

  // A copy is written into what lies there.
  void check_names_of(const string& path) {
    struct stat status;
    if (lstat(path_of(facts_, path).c_str(), &status) != 0 || status.st_nlink == 1) return;
    find(severity::WARNING, "other-names",
         in_quotes(path) + " has other names, under which it changes, too");
  }

  bool has_makefile() const { return makefile_ || kind_at(string(PRODUCT_MAKEFILE)); }

  void check_makefile_of_parts() {
    if (facts_.targets.empty() || has_makefile() || kind_at("install/" + facts_.id + ".make")) {
      return;
    }
    find(severity::ERROR, "makefile-missing",
         "there is no install/Makefile, which is to make part " + in_quotes(facts_.targets[0]));
  }

  void find_given_away() {
    plan_.given_away = files_given_away(plan_);
    if (plan_.given_away.empty()) return;
    find(severity::ERROR, "handing-on",
         "all that " + facts_.old_owner.value_or("group " + facts_.old_group.value_or("")) +
             " owns below " + facts_.path + " is handed on, also what is not of this product: " +
             std::to_string(plan_.given_away.size()) + ", such as " +
             in_quotes(plan_.given_away[0]) + "; install into a directory of its own");
  }

  const product_facts& facts_;
  std::vector<plan_finding>& findings_;
  product_plan plan_;
  std::optional<string> makefile_;      // of the archive
  std::vector<string> open_to_others_;  // directories that are there
};

}  // namespace

product_plan plan_product(const product_facts& facts, std::vector<plan_finding>& findings) {
  return product_planner(facts, findings).plan();
}

string path_of(const product_facts& facts, const string& path) {
  return facts.path + (facts.path.ends_with('/') ? "" : "/") + path;
}

}  // namespace morvane
