#include "output/makefile_text.h"

#include <algorithm>

#include "output/rule_texts.h"
#include "text/places.h"
#include "version/version.h"

namespace morvane {

namespace {

std::string fill_text(std::string_view text, const product_facts& facts, const places& more) {
  places all = places_of(facts);
  all.insert(all.end(), more.begin(), more.end());
  return fill_places(text, all, conditions_of(facts));
}

// Returns `text` once for each target.
std::string for_each_target(std::string_view text, const product_facts& facts) {
  std::string texts;
  for (const std::string& target : facts.targets) {
    texts += fill_text(text, facts, {{"target", target}});
  }
  return texts;
}

// Returns the lines that copy `file` into `directory`, none where the file is missing.
std::string write_obj_install(const product_facts& facts, std::string_view file,
                              std::string_view directory) {
  if (std::find(facts.files.begin(), facts.files.end(), file) == facts.files.end()) return "";
  return fill_text(COPY, facts,
                   {{"file", std::string(file)}, {"directory", std::string(directory)}});
}

std::string installation_directory(const product_facts& facts) {
  return facts.path + "/install";
}

std::string copied_installation_files(const product_facts& facts) {
  std::string copies;
  for (const std::string_view file : INST_FILES) {
    copies += write_obj_install(facts, file, facts.path);
  }
  copies += write_obj_install(facts, description_file(facts.id), installation_directory(facts));
  return copies;
}

std::string copied_settings_file(const product_facts& facts) {
  return write_obj_install(facts, settings_file(facts.id), installation_directory(facts));
}

struct rule {
  bool stands;
  std::string_view text;
};

// Returns the rules of a product in the order in which they are written.
std::vector<rule> rules_of(const product_facts& facts) {
  const bool owner_left = facts.old_owner.has_value();
  const bool group_left = facts.old_group.has_value();
  return {
      {true, MAIN_RULE},
      {true, MESSAGE_RULE},
      {facts.is_new, NEW_RULE},
      {facts.is_new, TAR_RULE},
      {facts.is_new, TAR_CONTENCE_RULE},
      {facts.is_new, INST_FILES_RULE},
      {facts.described, DAT_FILE_RULE},
      {facts.described, INST_DIR_RULE},
      {true, MAKE_RULE},
      {facts.is_new && facts.superuser, OWNER_RULE},
      {facts.is_new, GROUP_RULE},
      {facts.is_new && facts.closed, PERMISSION_RULE},
      {true, BLANK_LINE},
      {facts.closed && (owner_left || group_left), PERMISSION_OLD_RULE},
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
  for (const product_facts& facts : products) identifiers += " " + facts.id;
  return fill_places(FILE_HEAD, {{"program", std::string(PROGRAM_NAME)},
                                 {"installation files", files},
                                 {"directory", std::string(directory)},
                                 {"products", identifiers}});
}

}  // namespace

places places_of(const product_facts& facts) {
  return {{"id", facts.id},
          {"path", facts.path},
          {"owner", facts.owner},
          {"group", facts.group},
          {"name", facts.name},
          {"shown name", facts.shown_name},
          {"old owner", facts.old_owner.value_or("")},
          {"old group", facts.old_group.value_or("")},
          {"chown", facts.link_option ? "/usr/bin/chown -h" : "chown"},
          {"chgrp", facts.link_option ? "/usr/bin/chgrp -h" : "chgrp"}};
}

conditions conditions_of(const product_facts& facts) {
  return {{"new", facts.is_new},
          {"described", facts.described},
          {"targets", !facts.targets.empty()},
          {"closed", facts.closed},
          {"superuser", facts.superuser},
          {"owner left", facts.old_owner.has_value()},
          {"group left", facts.old_group.has_value()}};
}

std::string product_rules(const product_facts& facts) {
  std::string text;
  for (const auto& [stands, rule_text] : rules_of(facts)) {
    if (stands) text += rule_text;
  }
  // What is put in here was filled by itself: it is not looked at again.
  return fill_text(text, facts,
                   {{"target steps", for_each_target(TARGET_STEP, facts)},
                    {"target rules", for_each_target(TARGET_RULE, facts)},
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
