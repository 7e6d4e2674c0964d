#include "output/makefile_text.h"

#include <algorithm>

#include "output/rule_texts.h"
#include "text/places.h"
#include "version/version.h"

namespace morvane {

namespace {

// Returns the targets that the main rule names: those up to the first empty slot.
std::vector<std::string> named_targets(const product& record) {
  std::vector<std::string> names;
  for (const auto& target : record.target_dep) {
    if (target == nullptr) break;
    if (target->install == target_state::RESOLVED) names.emplace_back(target->target);
  }
  return names;
}

bool is_closed(const product& record) {
  return !record.other_access;
}

places places_of(const product_facts& facts) {
  const product& record = *facts.record;
  return {{"id", std::string(record.id)},
          {"path", std::string(record.path)},
          {"owner", std::string(record.owner)},
          {"group", std::string(record.group)},
          {"name", std::string(record.name)},
          {"shown name", std::string(product_name(record))},
          {"old owner", facts.old_owner.value_or("")},
          {"old group", facts.old_group.value_or("")},
          {"chown", facts.link_option ? "/usr/bin/chown -h" : "chown"},
          {"chgrp", facts.link_option ? "/usr/bin/chgrp -h" : "chgrp"}};
}

conditions conditions_of(const product_facts& facts) {
  return {{"new", is_new(*facts.record)},
          {"described", is_described(*facts.record)},
          {"targets", !named_targets(*facts.record).empty()},
          {"closed", is_closed(*facts.record)},
          {"superuser", facts.superuser},
          {"owner left", facts.old_owner.has_value()},
          {"group left", facts.old_group.has_value()}};
}

std::string fill_text(std::string_view text, const product_facts& facts, const places& more) {
  places all = places_of(facts);
  all.insert(all.end(), more.begin(), more.end());
  return fill_places(text, all, conditions_of(facts));
}

std::string target_steps(const product_facts& facts) {
  std::string steps;
  for (const std::string& target : named_targets(*facts.record)) {
    steps += fill_text(TARGET_STEP, facts, {{"target", target}});
  }
  return steps;
}

std::string target_rules(const product_facts& facts) {
  std::string rules;
  for (std::size_t slot = 0; slot < TARGETS; ++slot) {
    const target_dep* target = resolved_target(*facts.record, slot);
    if (target == nullptr) continue;
    rules += fill_text(TARGET_RULE, facts, {{"target", std::string(target->target)}});
  }
  return rules;
}

// Returns the lines that copy `file` into `directory`, none where the file is missing.
std::string write_obj_install(const product_facts& facts, std::string_view file,
                              std::string_view directory) {
  if (std::find(facts.files.begin(), facts.files.end(), file) == facts.files.end()) return "";
  return fill_text(COPY, facts,
                   {{"file", std::string(file)}, {"directory", std::string(directory)}});
}

std::string installation_directory(const product& record) {
  return std::string(record.path) + "/install";
}

std::string copied_installation_files(const product_facts& facts) {
  const product& record = *facts.record;
  std::string copies;
  for (const std::string_view file : INST_FILES) {
    copies += write_obj_install(facts, file, record.path);
  }
  copies += write_obj_install(facts, description_file(record), installation_directory(record));
  return copies;
}

std::string copied_settings_file(const product_facts& facts) {
  const product& record = *facts.record;
  return write_obj_install(facts, settings_file(record), installation_directory(record));
}

struct rule {
  bool stands;
  std::string_view text;
};

// Returns the rules of a product in the order in which they are written.
std::vector<rule> rules_of(const product_facts& facts) {
  const bool installs = is_new(*facts.record);
  const bool described = is_described(*facts.record);
  const bool closed = is_closed(*facts.record);
  const bool owner_left = facts.old_owner.has_value();
  const bool group_left = facts.old_group.has_value();
  return {
      {true, MAIN_RULE},
      {true, MESSAGE_RULE},
      {installs, NEW_RULE},
      {installs, TAR_RULE},
      {installs, TAR_CONTENCE_RULE},
      {installs, INST_FILES_RULE},
      {described, DAT_FILE_RULE},
      {described, INST_DIR_RULE},
      {true, MAKE_RULE},
      {installs && facts.superuser, OWNER_RULE},
      {installs, GROUP_RULE},
      {installs && closed, PERMISSION_RULE},
      {true, BLANK_LINE},
      {closed && (owner_left || group_left), PERMISSION_OLD_RULE},
      {owner_left, OWNER_OLD_RULE},
      {group_left, GROUP_OLD_RULE},
      {true, BLANK_LINE},
      {true, TARGET_RULES},
      {true, SUCCEEDED_RULE},
  };
}

std::string file_head(std::string_view directory, const std::vector<product_facts>& products) {
  std::string files;
  for (const std::string_view file : INST_FILES) files += " " + std::string(file);
  std::string identifiers;
  for (const product_facts& facts : products) identifiers += " " + std::string(facts.record->id);
  return fill_places(FILE_HEAD, {{"program", std::string(PROGRAM_NAME)},
                                 {"installation files", files},
                                 {"directory", std::string(directory)},
                                 {"products", identifiers}});
}

}  // namespace

std::string product_rules(const product_facts& facts) {
  std::string text;
  for (const auto& [stands, rule_text] : rules_of(facts)) {
    if (stands) text += rule_text;
  }
  // What is put in here was filled by itself: it is not looked at again.
  return fill_text(text, facts,
                   {{"target steps", target_steps(facts)},
                    {"target rules", target_rules(facts)},
                    {"copied installation files", copied_installation_files(facts)},
                    {"copied settings file", copied_settings_file(facts)}});
}

std::string makefile_text(std::string_view directory, const std::vector<product_facts>& products) {
  std::string text = file_head(directory, products);
  for (const product_facts& facts : products) {
    text += SEPARATOR;
    text += product_rules(facts);
  }
  text += SEPARATOR;
  text += FILE_TAIL;
  return text;
}

}  // namespace morvane
