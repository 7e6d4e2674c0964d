#include "output/product_rules.h"

#include <unistd.h>

#include <string>
#include <utility>

#include "catalogue/product_files.h"
#include "output/left_files.h"
#include "output/settings_file.h"
#include "platform/diagnostic.h"
#include "platform/identity.h"
#include "platform/shell.h"
#include "text/format.h"
#include "text/places.h"
#include "text/quoting.h"

namespace morvane {

namespace {

constexpr std::string_view CONTINUED = " \\\n\t\t";

// The host system whose chown and chgrp have to be told not to follow links.
constexpr std::string_view SYSTEM_WITH_LINK_OPTION = "SunOS5";

// Returns `name`, or the number of its user or group where make or the shell would interpret it.
std::string name_or_number(const std::string& name, unsigned number) {
  return holds_special_characters(name) ? std::to_string(number) : name;
}

// The rules of one product, written one after the other.
//
// A file's owner can only be changed by the superuser, so that the lines which do so are written
// only where the configurator runs as one.
class rule_writer {
 public:
  rule_writer(const product& record, std::string_view host_system) : product_(record) {
    std::string old_owner;
    std::string old_group;
    hand_on_owner_ = check_uid_diff(record, old_owner);
    hand_on_group_ = check_gid_diff(record, old_group);
    const bool link_option = host_system == SYSTEM_WITH_LINK_OPTION;
    places_ = {{"id", std::string(record.id)},
               {"path", std::string(record.path)},
               {"owner", std::string(record.owner)},
               {"group", std::string(record.group)},
               {"name", std::string(record.name)},
               {"shown name", std::string(product_name(record))},
               {"old owner", name_or_number(old_owner, geteuid())},
               {"old group", name_or_number(old_group, getegid())},
               {"chown", link_option ? "/usr/bin/chown -h" : "chown"},
               {"chgrp", link_option ? "/usr/bin/chgrp -h" : "chgrp"}};
  }

  std::string compose() {
    main_rule();
    message_rule();
    if (is_new()) {
      new_rule();
      archive_rule();
      contents_rule();
      installation_files_rule();
    }
    if (described()) {
      settings_file_rule();
      installation_directory_rule();
    }
    product_makefile_rule();
    if (is_new()) {
      if (superuser_) owner_rule();
      group_rule();
      if (removes_other_access()) permission_rule();
    }
    put("\n");
    if (removes_other_access() && hands_on()) old_permission_rule();
    if (hand_on_owner_) old_owner_rule();
    if (hand_on_group_) old_group_rule();
    put("\n");
    target_rules();
    succeeded_rule();
    return std::move(text_);
  }

 private:
  bool is_new() const { return product_.install == product_state::CONFIGURED; }
  bool described() const { return product_.descr_avail != NO_DESCRIPTION; }
  bool removes_other_access() const { return product_.other_access == 0; }
  bool hands_on() const { return hand_on_owner_ || hand_on_group_; }

  void put(std::string_view text) { text_ += fill_places(text, places_); }

  void put_with(std::string_view text, const places& more) {
    places all = places_;
    all.insert(all.end(), more.begin(), more.end());
    text_ += fill_places(text, all);
  }

  // make works through the prerequisites from left to right: this line is the order of the steps.
  void main_rule() {
    put("{id}: {id}-message");
    if (is_new()) put(" {id}-new");
    if (described()) put(" {id}-dat-file");
    main_rule_targets();
    if (hands_on()) put(CONTINUED);
    if (removes_other_access() && hands_on()) put("{id}-permission-old ");
    if (hand_on_owner_) put("{id}-owner-old ");
    if (hand_on_group_) put("{id}-group-old");
    put(CONTINUED);
    put("{id}-succeeded\n");
    put("\n\n");
  }

  // Names the targets up to the first empty slot.
  void main_rule_targets() {
    bool first = true;
    for (const auto& target : product_.target_dep) {
      if (target == nullptr) return;
      if (target->install != target_state::RESOLVED) continue;
      if (first) put(CONTINUED);
      first = false;
      put_with("{id}-{target} ", {{"target", std::string(target->target)}});
    }
  }

  void message_rule() {
    put("{id}-message:\n"
        "\techo \"*******************************************************************************"
        "\"\n"
        "\techo \" \"\n"
        "\techo \"***  installation of '{shown name}'  ***\"\n"
        "\techo \" \"\n"
        "\n\n\n");
  }

  void new_rule() {
    put("{id}-new:\t{id}-tar");
    if (superuser_) put(" {id}-owner");
    put(CONTINUED);
    put("{id}-group");
    if (removes_other_access()) put(" {id}-permission");
    put(CONTINUED);
    put("{id}-inst-files {id}-make\n"
        "\n\n\n");
  }

  // Removing the list of contents here has it made again from this archive.
  void archive_rule() {
    put("{id}-tar: {id}.tar\n"
        "\techo \"** extracting $(TAR_PATH)/{id}.tar to {path}\"\n"
        "\tcd {path}; tar -xvpf $(TAR_PATH)/{id}.tar\n"
        "\tcd {path}; rm -f $(TAR_PATH)/{id}.tar-contence\n"
        "\n\n");
  }

  void contents_rule() {
    put("{id}.tar-contence: {id}.tar\n"
        "\techo \"** getting contence of $(TAR_PATH)/{id}.tar\"\n"
        "\ttar -tf $(TAR_PATH)/{id}.tar | cut -f1 -d\" \" > $(TAR_PATH)/{id}.tar-contence\n"
        "\n\n");
  }

  void installation_files_rule() {
    put("{id}-inst-files:");
    if (described()) put(" {id}-inst-dir");
    put("\n"
        "\techo \"** copying installation stuff to {path}\"\n");
    for (const std::string_view name : INST_FILES) write_obj_install(name, "{path}");
    if (described()) write_obj_install(file_name(DESCRIPTION_ENDING), "{path}/install");
    put("\n\n");
  }

  void settings_file_rule() {
    put("{id}-dat-file: {id}-inst-dir\n");
    write_obj_install(file_name(SETTINGS_ENDING), "{path}/install");
    put("\n\n");
  }

  void installation_directory_rule() {
    put("{id}-inst-dir:\n"
        "\tif test -d {path}/install; \\\n"
        "\tthen \\\n"
        "\t\t:;\\\n"
        "\telse \\\n"
        "\t\techo \"** creating 'install' directory in '{path}'\"; \\\n"
        "\t\tmkdir {path}/install; \\\n");
    if (superuser_) put("\t\tchown {owner} {path}/install; \\\n");
    put("\t\tchgrp {group} {path}/install; \\\n");
    if (removes_other_access()) put("\t\tchmod o-rwx {path}/install; \\\n");
    put("\tfi\n\n");
  }

  // The product's own makefile is consumed once. It may be missing where only the phony name is
  // made: an earlier run has prepared it.
  void product_makefile_rule() {
    put("{id}-make {path}/install/{id}.make:\n"
        "\tif test -f {path}/install/Makefile; then \\\n"
        "\t\techo \"** preparing product specific Makefile '{path}/install/{id}.make'\"; \\\n"
        "\t\techo \"include {id}.dat\" > {path}/install/{id}.make; \\\n"
        "\t\tcat {path}/install/Makefile >> {path}/install/{id}.make; \\\n"
        "\t\trm -f {path}/install/Makefile; \\\n");
    if (superuser_) put("\t\tchown {owner} {path}/install/{id}.make; \\\n");
    put("\t\tchgrp {group} {path}/install/{id}.make; \\\n");
    if (removes_other_access()) put("\t\tchmod o-rwx {path}/install/{id}.make; \\\n");
    put("\telse \\\n"
        "\t\tif test \"$@\" != \"{id}-make\"; then \\\n"
        "\t\t\techo \"Makefile '{path}/install/Makefile' missing, cannot install product specific "
        "targets.\"; \\\n"
        "\t\t\texit 1; \\\n"
        "\t\tfi; \\\n"
        "\tfi\n"
        "\n"
        "\n");
  }

  void owner_rule() {
    put("{id}-owner: {id}.tar-contence\n"
        "\techo \"** changing owner to '{owner}' inside the tree '{path}'\"\n"
        "\tcd {path}; {chown} {owner} `cat $(TAR_PATH)/{id}.tar-contence`\n"
        "\n");
  }

  void group_rule() {
    put("{id}-group: {id}.tar-contence\n"
        "\techo \"** changing group to '{group}' inside the tree '{path}'\"\n"
        "\tcd {path}; {chgrp} {group} `cat $(TAR_PATH)/{id}.tar-contence`\n"
        "\n");
  }

  void permission_rule() {
    put("{id}-permission: {id}.tar-contence\n"
        "\techo \"** changing permissions inside the tree '{path}'\"\n"
        "\tcd {path}; chmod o-rwx `cat $(TAR_PATH)/{id}.tar-contence`\n"
        "\n");
  }

  void old_permission_rule() {
    put("{id}-permission-old:\n");
    if (hand_on_owner_) {
      put("\techo \"** removing other access for files with owner '{old owner}'\"\n"
          "\tcd {path}; find . -user {old owner} -exec chmod o= {} \\; 2>/dev/null\n");
    }
    if (hand_on_group_) {
      put("\techo \"** removing other access for files with group '{old group}'\"\n"
          "\tcd {path}; find . -group {old group} -exec chmod o= {} \\; 2>/dev/null\n");
    }
    put("\n");
  }

  void old_owner_rule() {
    put("{id}-owner-old:\n"
        "\techo \"** changing owner to '{owner}' for all files with owner '{old owner}'\"\n"
        "\tcd {path}; find . -user {old owner} -exec {chown} {owner} {} \\; 2>/dev/null\n"
        "\n");
  }

  void old_group_rule() {
    put("{id}-group-old:\n"
        "\techo \"** changing group to '{group}' for all files with group '{old group}'\"\n"
        "\tcd {path}; find . -group {old group} -exec {chgrp} {group} {} \\; 2>/dev/null\n"
        "\n");
  }

  void target_rules() {
    for (std::size_t slot = 0; slot < TARGETS; ++slot) {
      const target_dep* target = resolved_target(product_, slot);
      if (target == nullptr) continue;
      put_with(
          "{id}-{target}: {path}/install/{id}.make\n"
          "\techo \"** making '{target}' for '{name}'\"\n"
          "\tcd {path}/install; $(MAKE) -f {id}.make {target}\n"
          "\n",
          {{"target", std::string(target->target)}});
    }
  }

  void succeeded_rule() {
    put("{id}-succeeded:\n"
        "\techo \" \"\n"
        "\techo \"\t\t***  succeeded  ***\"\n"
        "\techo \" \"\n"
        "\n");
  }

  // Writes the lines that copy a file of the current directory into `directory`, a text with
  // places, unless the copy there is the same. A file that is missing now is left out, and standard
  // error says so.
  void write_obj_install(std::string_view file, std::string_view directory) {
    if (!run_command(fill("test -f ./%s", {quote(file)}))) {
      diagnose_warning(fill("installation file './%s' missing.", {file}));
      return;
    }
    const places copy = {{"file", std::string(file)},
                         {"directory", fill_places(directory, places_)}};
    put_with(
        "\tdiff ./{file} {directory}/{file} > /dev/null 2>&1 || \\\n"
        "\t(cp -p ./{file} {directory}",
        copy);
    if (superuser_) put_with(" && \\\n\tchown {owner} {directory}/{file}", copy);
    put_with(" && \\\n\tchgrp {group} {directory}/{file}", copy);
    if (removes_other_access()) put_with(" && \\\n\tchmod o-rwx {directory}/{file}", copy);
    put("  )\n");
  }

  std::string file_name(std::string_view ending) const {
    return fill("%s%s", {product_.id, ending});
  }

  const product& product_;
  const bool superuser_ = acts_as_superuser();
  bool hand_on_owner_ = false;
  bool hand_on_group_ = false;
  places places_;
  std::string text_;
};

}  // namespace

std::string product_rules(const product& record, std::string_view host_system) {
  return rule_writer(record, host_system).compose();
}

}  // namespace morvane
