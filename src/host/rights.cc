#include "host/rights.h"

#include "console/leave.h"
#include "console/printer.h"
#include "messages/table.h"
#include "platform/diagnostic.h"
#include "platform/identity.h"
#include "platform/shell.h"
#include "platform/signals.h"
#include "text/format.h"
#include "text/quoting.h"

namespace morvane {

namespace {

void print_refusal(message_number whom, std::string_view who) {
  print(fill("%s %s '%s' !\n", {r[NO_RIGHTS], r[whom], who}));
}

bool check_owner(std::string_view user_name) {
  if (real_user_name() == user_name || acts_as_superuser()) return true;
  print_refusal(NO_RIGHTS_OWNER, user_name);
  return false;
}

bool check_group(std::string_view group_name) {
  const std::string probe(MAKEFILE_NAME);
  remove_on_signal(probe);  // it is empty, and looks like the makefile
  if (!run_command(fill("touch ./%s 2>/dev/null 1>/dev/null", {MAKEFILE_NAME}))) {
    diagnose(fill("\n\n%s\n\n ./%s", {r[PROBE_NOT_CREATED], MAKEFILE_NAME}));
    quit();
  }
  const bool allowed = run_command(
      fill("chgrp %s ./%s 2>/dev/null 1>/dev/null", {quote(group_name), MAKEFILE_NAME}));
  if (!allowed) print_refusal(NO_RIGHTS_GROUP, group_name);
  // The quotes keep an alias of that name away.
  run_command(fill("'rm' -f ./%s", {MAKEFILE_NAME}));
  keep_on_signal(probe);
  return allowed;
}

}  // namespace

bool check_chown_rights(std::optional<std::string_view> user_name,
                        std::optional<std::string_view> group_name) {
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
