#include "output/product_facts.h"

#include <unistd.h>

#include "catalogue/product_files.h"
#include "output/left_files.h"
#include "platform/diagnostic.h"
#include "platform/effects.h"
#include "platform/identity.h"
#include "text/format.h"
#include "text/quoting.h"

namespace morvane {

namespace {

// The host system whose chown and chgrp have to be told not to follow links.
constexpr std::string_view SYSTEM_WITH_LINK_OPTION = "SunOS5";

// Returns `name`, or the number of its user or group where make or the shell would interpret it.
std::string name_or_number(const std::string& name, unsigned number) {
  return holds_special_characters(name) ? std::to_string(number) : name;
}

bool lies_here(const std::string& file) {
  if (on_host().is_file(file)) return true;
  diagnose_warning(fill("installation file './%s' missing.", {file}));
  return false;
}

}  // namespace

std::string description_file(std::string_view id) {
  return fill("%s%s", {id, DESCRIPTION_ENDING});
}

std::string settings_file(std::string_view id) {
  return fill("%s%s", {id, SETTINGS_ENDING});
}

std::vector<std::string> files_to_copy(const product_facts& facts) {
  std::vector<std::string> files;
  if (facts.is_new) files.assign(INST_FILES.begin(), INST_FILES.end());
  if (facts.is_new && facts.described) files.push_back(description_file(facts.id));
  if (facts.described) files.push_back(settings_file(facts.id));
  return files;
}

product_facts facts_of(const product& record) {
  product_facts facts;
  facts.id = record.id.view();
  facts.name = record.name.view();
  facts.shown_name = product_name(record);
  facts.path = record.path.view();
  facts.owner = record.owner.view();
  facts.group = record.group.view();
  facts.is_new = record.install == product_state::CONFIGURED;
  facts.described = record.descr_avail != NO_DESCRIPTION;
  facts.closed = !record.other_access;
  for (std::size_t slot = 0; slot < TARGETS; ++slot) {
    const target_dep* target = resolved_target(record, slot);
    if (target != nullptr) facts.targets.emplace_back(target->target);
  }
  return facts;
}

product_facts gather_facts(const product& record, std::string_view host_system) {
  product_facts facts = facts_of(record);
  facts.superuser = acts_as_superuser();
  facts.link_option = host_system == SYSTEM_WITH_LINK_OPTION;
  std::string old_name;
  // `find`, which looks for them, takes a number as well.
  if (check_uid_diff(record, old_name)) facts.old_owner = name_or_number(old_name, geteuid());
  if (check_gid_diff(record, old_name)) facts.old_group = name_or_number(old_name, getegid());
  for (const std::string& file : files_to_copy(facts)) {
    if (lies_here(file)) facts.files.push_back(file);
  }
  return facts;
}

}  // namespace morvane
