// What lies where in a product's directory once its archive is extracted.
#ifndef MORVANE_LINT_ARCHIVE_TREE_H
#define MORVANE_LINT_ARCHIVE_TREE_H

#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "archive/archive_reader.h"

namespace morvane {

// A place in the directory. The members live as long as what was read.
struct tree_place {
  tree_place* above = nullptr;
  std::map<std::string_view, tree_place*> below;
  const archive_member* member = nullptr;  // what lies here in the end; a directory may be none
  const archive_member* seen = nullptr;    // what lies here after the members looked at so far

  // Of a link, once it was followed: where it leads, or why it leads nowhere.
  bool followed = false;
  tree_place* leads_to = nullptr;
  std::string_view astray;
  int links = 0;  // that are passed on the way there

  member_kind kind() const { return member == nullptr ? member_kind::DIRECTORY : member->kind; }
};

class archive_tree {
 public:
  archive_tree() { places_.emplace_back(); }

  // Puts a member at its place, in the place of an earlier one.
  void add(const archive_member& member);

  tree_place& top() { return places_.front(); }

  // Returns the place of a name, or null.
  tree_place* find(const std::vector<std::string_view>& path);

  // Returns why a symbolic link leads to no place in the tree; empty where it does. Each link is
  // followed once, however many others lead through it.
  std::string_view astray(tree_place& link) { return follow(link, 1); }

 private:
  std::string_view follow(tree_place& link, int depth);
  std::string_view walk(tree_place& link, int depth);

  std::deque<tree_place> places_;
};

}  // namespace morvane

#endif  // MORVANE_LINT_ARCHIVE_TREE_H
