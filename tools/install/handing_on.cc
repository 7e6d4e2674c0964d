#include "install/handing_on.h"

#include <grp.h>
#include <pwd.h>

#include <cstdint>
#include <optional>
#include <set>
#include <string_view>

#include "platform/file.h"
#include "receipt/receipt_store.h"
#include "text/number.h"
#include "tree/directory.h"
#include "tree/walk.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

// Return the number of a user or group of that name, as find(1) takes it.
std::optional<std::uint64_t> user_number(const std::optional<string>& name) {
  if (!name) return std::nullopt;
  if (const passwd* found = getpwnam(name->c_str())) return found->pw_uid;
  return is_digits(*name) ? std::optional<std::uint64_t>(number_or_zero(*name)) : std::nullopt;
}

std::optional<std::uint64_t> group_number(const std::optional<string>& name) {
  if (!name) return std::nullopt;
  if (const group* found = getgrnam(name->c_str())) return found->gr_gid;
  return is_digits(*name) ? std::optional<std::uint64_t>(number_or_zero(*name)) : std::nullopt;
}

// What the product put there earlier is its own, too.
std::set<string> own_paths(const product_plan& plan) {
  std::set<string> own(plan.extracted.begin(), plan.extracted.end());
  own.insert(plan.copied.begin(), plan.copied.end());
  own.insert("install");
  own.insert("install/" + plan.facts.id + string(RECEIPT_ENDING));
  receipt_store store;
  add_beside(store, plan.facts.path);
  const string directory = normal_path(plan.facts.path).value_or(plan.facts.path);
  if (const stored_receipt* stored = find_trusted(store, plan.facts.id, directory)) {
    for (const receipt_entry& entry : stored->content.entries) own.insert(entry.path);
  }
  return own;
}

}  // namespace

std::vector<string> files_given_away(const product_plan& plan) {
  std::vector<string> given;
  const auto owner = user_number(plan.facts.old_owner);
  const auto group = group_number(plan.facts.old_group);
  if (!owner && !group) return given;
  const descriptor directory = open_directory(plan.facts.path);
  if (!directory.is_open()) return given;
  const std::set<string> own = own_paths(plan);
  for (const tree_file& file : walk(directory).files) {
    const bool goes = file.status.owner == owner || file.status.group == group;
    if (goes && !own.contains(file.path)) given.push_back(file.path);
  }
  return given;
}

}  // namespace morvane
