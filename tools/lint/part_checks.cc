#include "lint/part_checks.h"

#include <string>
#include <string_view>
#include <vector>

#include "archive/archive_reader.h"
#include "lint/makefile_targets.h"
#include "lint/spelling.h"
#include "report/finding.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

// Returns the member that is meant for the makefile, if there is one: it has other capitals, lies
// at the top, or below another directory.
string misplaced_makefile(const archive_content& content) {
  for (const archive_member& member : content.members) {
    const std::vector<string_view> parts = parts_of_name(member.name);
    string name = joined_name(parts);
    const bool at_top = parts.size() == 1 && name == "Makefile";
    const bool deeper = parts.size() == 3 && name.ends_with("/install/Makefile");
    if (at_top || deeper || is_same_but_for_capitals(name, PRODUCT_MAKEFILE) ||
        is_same_but_for_capitals(name, "install/GNUmakefile")) {
      return name;
    }
  }
  return "";
}

// Checks the makefile of one archive.
class part_checks {
 public:
  part_checks(const distributed_product& product, const archive_content& content,
              const archived_files& files, finding_list& findings)
      : product_(product),
        archive_(*product.archive),
        content_(content),
        files_(files),
        findings_(findings) {}

  void check() {
    const morvane::product& record = product_.description.record;
    if (record.target_dep[0] == nullptr) return;
    if (!content_.wanted) {
      add_missing(record);
      return;
    }
    const makefile_targets targets = targets_of(*content_.wanted);
    check_makefile(targets);
    for (std::size_t i = 0; i < TARGETS && record.target_dep[i] != nullptr; ++i) {
      const string part(record.target_dep[i]->target);
      const place_in_file& place = product_.description.parts[i].place;
      if (targets.names.contains(part)) {
        check_target(part, place, targets);
      } else {
        add_without_target(part, place, targets);
      }
    }
  }

 private:
  void add(check_id id, const string& text) { findings_.add(id, archive_, WHOLE_FILE, text); }

  void add(check_id id, const place_in_file& place, const string& text) {
    findings_.add(id, product_.description.file, place, text);
  }

  string where() const { return string(PRODUCT_MAKEFILE) + " of " + archive_; }

  void add_missing(const morvane::product& record) {
    const string meant = misplaced_makefile(content_);
    if (meant.empty()) {
      add("makefile-missing", product_.description.parts[0].place,
          archive_ + " holds no install/Makefile, which is to make part " +
              in_quotes(record.target_dep[0]->target) +
              ": the installation fails there; add it, or remove the parts");
      return;
    }
    const string beyond = "/" + string(PRODUCT_MAKEFILE);
    add("makefile-misplaced",
        "install/Makefile is missing, and " + in_quotes(meant) + " looks like it: " +
            (meant.ends_with(beyond)
                 ? "pack with 'tar -C " + meant.substr(0, meant.size() - beyond.size()) + " .'"
                 : "put it there"));
  }

  void check_makefile(const makefile_targets& targets) {
    if (targets.blanks_for_tab != 0) {
      add("makefile-blanks",
          "line " + std::to_string(targets.blanks_for_tab) +
              " of install/Makefile begins with blanks, where make wants a tab before a command: "
              "the installation fails");
    }
    if (targets.bare_variable_line != 0) {
      add("makefile-variable",
          "line " + std::to_string(targets.bare_variable_line) + " of install/Makefile has " +
              in_quotes(targets.bare_variable) + ", of which make takes " +
              in_quotes(targets.bare_variable.substr(0, 2)) + " for the variable: write $(" +
              targets.bare_variable.substr(1) + "), or $$ where the shell's is meant");
    }
  }

  // Looks at a part that is a target, but which make does not make.
  void check_target(const string& part, const place_in_file& place,
                    const makefile_targets& targets) {
    if (targets.with_prerequisites.contains(part)) return;
    const string file = "install/" + part;
    const bool has_source = holds_beginning(files_, file + ".");
    if (!targets.with_commands.contains(part) && !targets.hides_some && !has_source) {
      add("part-without-target", place,
          "part " + in_quotes(part) + " is a target without commands in " + where() +
              ": make reports success and does nothing");
    } else if (!targets.phony.contains(part) && is_there(files_, file)) {
      add("part-is-file", place,
          "part " + in_quotes(part) + " is a file in install of " + archive_ +
              ", and its target there needs nothing: make takes it for done; add it to .PHONY");
    }
  }

  void add_without_target(const string& part, const place_in_file& place,
                          const makefile_targets& targets) {
    const bool whole = content_.wanted->size() < MOST_CONTENT && !targets.hides_some;
    if (!whole) {
      add("part-hidden", place,
          "part " + in_quotes(part) + " is no target in " + where() +
              ", unless it is one that is included, or named by a pattern or variable");
      return;
    }
    add("part-without-target", place,
        "part " + in_quotes(part) + " is no target in " + where() +
            (targets.phony.contains(part)
                 ? ", only phony: make reports success and does nothing; add a rule"
                 : ": the installation fails there; add a rule, or correct the name"));
  }

  const distributed_product& product_;
  const string& archive_;
  const archive_content& content_;
  const archived_files& files_;
  finding_list& findings_;
};

}  // namespace

void check_parts(const distributed_product& product, const archive_content& content,
                 const archived_files& files, finding_list& findings) {
  part_checks(product, content, files, findings).check();
}

}  // namespace morvane
