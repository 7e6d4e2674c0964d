#include "lint/archive_tree.h"

#include <algorithm>

namespace morvane {

namespace {

constexpr int MOST_LINKS = 40;  // that a system follows on the way to one file

constexpr std::string_view CIRCLE = "leads in a circle";
constexpr std::string_view NOWHERE = "leads nowhere";

}  // namespace

void archive_tree::add(const archive_member& member) {
  tree_place* here = &top();
  for (const std::string_view part : parts_of_name(member.name)) {
    tree_place*& below = here->below[part];
    if (below == nullptr) {
      places_.emplace_back().above = here;
      below = &places_.back();
    }
    here = below;
  }
  here->member = &member;
}

tree_place* archive_tree::find(const std::vector<std::string_view>& path) {
  tree_place* here = &top();
  for (const std::string_view part : path) {
    const auto below = here->below.find(part);
    if (below == here->below.end()) return nullptr;
    here = below->second;
  }
  return here;
}

std::string_view archive_tree::follow(tree_place& link, int depth) {
  if (!link.followed) {
    link.followed = true;
    link.astray = CIRCLE;  // for what leads back here, and where too many links lead here
    if (depth <= MOST_LINKS) link.astray = walk(link, depth);
  }
  return link.astray;
}

std::string_view archive_tree::walk(tree_place& link, int depth) {
  std::string_view target = link.member->target;
  if (target.empty()) return NOWHERE;
  if (target.starts_with('/')) return "is absolute, or leads to one that is";
  tree_place* here = link.above;
  link.links = 1;
  for (;;) {
    const std::size_t slash = std::min(target.find('/'), target.size());
    const std::string_view part = target.substr(0, slash);
    if (here->kind() != member_kind::DIRECTORY) return NOWHERE;
    if (part == "..") {
      here = here->above;
      if (here == nullptr) return "leads out of the tree";
    } else if (!part.empty() && part != ".") {
      const auto below = here->below.find(part);
      if (below == here->below.end()) return NOWHERE;
      here = below->second;
      if (here->kind() == member_kind::LINK) {
        const std::string_view further = follow(*here, depth + 1);
        link.links += here->links;
        if (!further.empty()) return further;
        here = here->leads_to;
      }
    }
    if (slash == target.size()) break;
    target.remove_prefix(slash + 1);
  }
  link.leads_to = here;
  return link.links <= MOST_LINKS ? "" : CIRCLE;
}

}  // namespace morvane
