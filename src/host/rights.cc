#include "host/rights.h"

#include "console/leave.h"
#include "console/printer.h"
#include "messages/table.h"
#include "platform/diagnostic.h"
#include "platform/effects.h"
#include "platform/identity.h"
#include "platform/shell.h"
#include "text/format.h"

namespace morvane {

namespace {

void print_refusal(message_number whom, std::string_view who) {
  print(fill("%s %s '%s' !\n", {r[NO_RIGHTS], r[whom], who}));
}

// The superuser may name users whom this host does not know.
bool check_owner(std::string_view user_name) {
  if (acts_as_superuser() || real_user_name() == user_name) return true;
  print_refusal(NO_RIGHTS_OWNER, user_name);
  return false;
}

bool check_group(std::string_view group_name) {
  const std::string probe(MAKEFILE_NAME);
  const group_trial outcome = on_host().try_group(probe, group_name);
  if (outcome == group_trial::NO_PROBE) {
    diagnose(fill("\n\n%s\n\n ./%s", {r[PROBE_NOT_CREATED], MAKEFILE_NAME}));
    quit();
  }
  // Before the probe goes: a complaint of its removal comes behind this line.
  if (outcome == group_trial::REFUSED) print_refusal(NO_RIGHTS_GROUP, group_name);
  on_host().remove_probe(probe);
  return outcome == group_trial::ALLOWED;
}

}  // namespace

bool check_chown_rights(std::optional<std::string_view> user_name,
                        std::optional<std::string_view> group_name) {
  // The group is tried whatever the owner came to: both refusals are told.
  const bool owner_allowed = !user_name || check_owner(*user_name);
  const bool group_allowed = !group_name || check_group(*group_name);
  return owner_allowed && group_allowed;
}

void check_rights() {
  if (run_command(std::string(r[SITE_RIGHTS_COMMAND]))) return;
  diagnose(fill("\n\n%s\n\n", {r[SITE_RIGHTS_FAILED]}));
  if (acts_as_superuser()) print(fill("%s\n\n", {r[SITE_RIGHTS_FAILED_SUPERUSER]}));
  quit();
}

}  // namespace morvane
