#include "output/left_files.h"

#include <algorithm>

#include "platform/identity.h"
#include "text/white_space.h"
#include "text/words.h"

namespace morvane {

namespace {

// What an earlier, longer list left behind the end mark does not count here; whoever selects the
// product needs the rights for it all the same.
bool stands_in(const std::array<name_text, FIXED_NAMES>& names, std::string_view name) {
  const auto end = std::find(names.begin(), names.end(), "");
  return std::find(names.begin(), end, name) != end;
}

// Tells whether `name` is among the fixed owners or groups, as `list` says, of a wanted target.
bool stands_in_targets(const product& record, long_text target_dep::*list, std::string_view name) {
  for (const auto& target : record.target_dep) {
    if (target == nullptr || target->install < target_state::WANTED) continue;
    const long_text& names = (*target).*list;
    if (!names) continue;
    const auto words = split_words(*names, BLANKS);
    if (std::find(words.begin(), words.end(), name) != words.end()) return true;
  }
  return false;
}

// Tells whether the run extracts the product and it has no description, or one with fixed lists:
// those products leave it to the makefile to hand on what their targets make.
bool leaves_files(const product& record) {
  return record.install == product_state::CONFIGURED && record.descr_avail <= FIXED_LISTS;
}

}  // namespace

bool check_uid_diff(const product& record, std::string& old_name) {
  old_name = effective_user_name();
  return leaves_files(record) && acts_as_superuser() && record.owner != old_name &&
         !stands_in(record.fix_owner, old_name) &&
         !stands_in_targets(record, &target_dep::fix_owner, old_name);
}

// Unlike with owners, an ordinary user's files are handed on too: he may belong to both groups.
bool check_gid_diff(const product& record, std::string& old_name) {
  old_name = effective_group_name();
  return leaves_files(record) && record.group != old_name &&
         !stands_in(record.fix_group, old_name) &&
         !stands_in_targets(record, &target_dep::fix_group, old_name);
}

}  // namespace morvane
