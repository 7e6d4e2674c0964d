#include "lint/member_checks.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "lint/archive_tree.h"
#include "lint/archived_files.h"
#include "report/finding.h"

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
constexpr unsigned OWNER_ALL = 0700;
constexpr unsigned OWNER_READS = 0400;

constexpr std::array<string_view, 4> COPIED_FILES = {"morvane.rsc", "morvane.SunOS4",
                                                     "morvane.SunOS5", "Makefile"};

// Tells whether tar lists such a name otherwise than it is, or cut and the shell take it apart.
bool is_not_handed_on(string_view name) {
  const std::size_t bracket = name.find('[');
  if (bracket != string_view::npos && name.find(']', bracket) != string_view::npos) return true;
  return std::ranges::any_of(name, [](char c) {
    return c <= ' ' || c > '~' || string_view("\\*?").find(c) != string_view::npos;
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
    findings_.add(id, file_, WHOLE_FILE, in_quotes(member.name) + ": " + text);
  }

  bool has_usable_name(const archive_member& member) {
    const string& name = member.name;
    const path_parts parts = parts_of_name(name);
    const bool too_long =
        name.size() > LONGEST_NAME ||
        std::ranges::any_of(parts, [](string_view part) { return part.size() > LONGEST_PART; });
    if (too_long) {
      findings_.add("member-name", file_, WHOLE_FILE,
                    in_quotes(name.substr(0, LONGEST_PART)) +
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
      add("member-below-file", member, "lies below " + in_quotes(file) + ", which is no directory");
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
          "a hard link to " + in_quotes(member.target) +
              ", which is no file that stands before it: pack it again");
    } else if (place.kind() == member_kind::LINK) {
      const string_view why = tree_.astray(place);
      if (!why.empty()) {
        add("link-astray", member,
            "a link to " + in_quotes(place.member->target) + " that " + string(why) +
                ": chown and chmod follow it; link within the tree, or let a part make it");
      }
    } else if ((member.kind == member_kind::FILE && (member.mode & OWNER_READS) == 0) ||
               (member.kind == member_kind::DIRECTORY && (member.mode & OWNER_ALL) != OWNER_ALL)) {
      add("member-mode", member,
          "its owner cannot read it, or work in it, so that only the superuser can install: pack "
          "it again with another mode");
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
      if (here->kind() != member_kind::DIRECTORY) return above.empty() ? "." : joined_name(above);
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

}  // namespace

void check_members(const string& identifier, const string& file, const archive_content& content,
                   finding_list& findings) {
  member_checks(identifier, file, content, findings).check();
}

}  // namespace morvane
