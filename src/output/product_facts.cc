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

// Returns the files that the rules of `record` copy, in their order.
std::vector<std::string> files_to_copy(const product& record) {
  std::vector<std::string> files;
  if (is_new(record)) files.assign(INST_FILES.begin(), INST_FILES.end());
  if (is_new(record) && is_described(record)) files.push_back(description_file(record));
  if (is_described(record)) files.push_back(settings_file(record));
  return files;
}

bool lies_here(const std::string& file) {
  if (on_host().is_file(file)) return true;
  diagnose_warning(fill("installation file './%s' missing.", {file}));
  return false;
}

}  // namespace

bool is_new(const product& record) {
  return record.install == product_state::CONFIGURED;
}

bool is_described(const product& record) {
  return record.descr_avail != NO_DESCRIPTION;
}

std::string description_file(const product& record) {
  return fill("%s%s", {record.id, DESCRIPTION_ENDING});
}

std::string settings_file(const product& record) {
  return fill("%s%s", {record.id, SETTINGS_ENDING});
}

product_facts gather_facts(const product& record, std::string_view host_system) {
  product_facts facts;
  facts.record = &record;
  facts.superuser = acts_as_superuser();
  facts.link_option = host_system == SYSTEM_WITH_LINK_OPTION;
  std::string old_name;
  // `find`, which looks for them, takes a number as well.
  if (check_uid_diff(record, old_name)) facts.old_owner = name_or_number(old_name, geteuid());
  if (check_gid_diff(record, old_name)) facts.old_group = name_or_number(old_name, getegid());
  for (const std::string& file : files_to_copy(record)) {
    if (lies_here(file)) facts.files.push_back(file);
  }
  return facts;
}

}  // namespace morvane
