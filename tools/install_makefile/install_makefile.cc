#include "install_makefile/install_makefile.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "install_makefile/rule_match.h"
#include "output/makefile_text.h"
#include "output/rule_texts.h"
#include "version/version.h"

namespace morvane {

namespace {

// Takes the facts about one product out of its rules. Nearly every fact stands in several lines, so
// that a line which was changed is not what the others are measured by.
class facts_reader {
 public:
  explicit facts_reader(text_lines lines) : lines_(std::move(lines)) {}

  // Returns nothing where the lines are those of no product.
  std::optional<product_facts> read() {
    if (!find_id()) return std::nullopt;
    know("id", facts_.id);
    find(facts_.path, "path", {MAKE_RULE});
    know("path", facts_.path);
    find(facts_.group, "group", {MAKE_RULE, INST_DIR_RULE, GROUP_RULE});
    know("group", facts_.group);
    find(facts_.owner, "owner", {MAKE_RULE, INST_DIR_RULE, OWNER_RULE});
    know("owner", facts_.owner);
    find(facts_.shown_name, "shown name", {MESSAGE_RULE});
    read_conditions();
    read_targets();
    read_left_files();
    read_files();
    return facts_;
  }

 private:
  using rule_list = std::initializer_list<std::string_view>;

  void know(std::string_view name, const std::string& value) { known_.push_back({name, value}); }

  bool find(std::string& value, std::string_view wanted, rule_list rules) const {
    for (const std::string_view rule : rules) {
      if (const auto found = value_at(wanted, rule, known_, lines_)) {
        value = *found;
        return true;
      }
    }
    return false;
  }

  // It is that of a main rule, too.
  bool find_id() {
    for (const std::string_view rule : {SUCCEEDED_RULE, MESSAGE_RULE}) {
      const auto found = value_at("id", rule, {}, lines_);
      if (!found) continue;
      facts_.id = *found;
      if (holds_line_of(MAIN_RULE, "", {{"id", facts_.id}}, lines_)) return true;
    }
    return false;
  }

  bool has_any_of(rule_list rules, std::string_view mark = "") const {
    return std::ranges::any_of(
        rules, [&](std::string_view rule) { return holds_line_of(rule, mark, known_, lines_); });
  }

  void read_conditions() {
    facts_.is_new = has_any_of({TAR_RULE});
    facts_.described = has_any_of({INST_DIR_RULE});
    facts_.closed =
        has_any_of({PERMISSION_RULE}) || has_any_of({MAKE_RULE, INST_DIR_RULE, NEW_RULE}, "closed");
    facts_.superuser = has_any_of({MAKE_RULE, INST_DIR_RULE, NEW_RULE}, "superuser");
    std::string command;
    facts_.link_option = find(command, "chgrp", {GROUP_RULE}) && command.ends_with("-h");
    for (const place& each : places_of(facts_)) {
      if (each.name == "chown" || each.name == "chgrp") known_.push_back(each);
    }
  }

  void read_targets() {
    // Of lists that differ, the one that the main rule has, too.
    for (const auto& targets : lists_at("target", TARGET_RULE, known_, lines_)) {
      facts_.targets = targets;
      std::string steps;
      for (const std::string& target : targets) {
        steps += fill_places(TARGET_STEP, {{"id", facts_.id}, {"target", target}});
      }
      if (holds_line_of(MAIN_RULE, "targets", {{"target steps", steps}}, lines_)) break;
    }
    for (std::size_t i = 0; i < std::min(facts_.targets.size(), TARGETS); ++i) {
      known_.push_back({"target", facts_.targets[i]});
      const bool found = find(facts_.name, "name", {TARGET_RULE});
      known_.pop_back();
      if (found) break;
    }
  }

  void read_left_files() {
    std::string old;
    if (find(old, "old owner", {OWNER_OLD_RULE, PERMISSION_OLD_RULE})) facts_.old_owner = old;
    if (find(old, "old group", {GROUP_OLD_RULE, PERMISSION_OLD_RULE})) facts_.old_group = old;
  }

  void read_files() {
    for (const std::string& file : files_to_copy(facts_)) {
      const bool at_top = std::ranges::find(INST_FILES, file) != INST_FILES.end();
      places known = known_;
      known.push_back({"file", file});
      known.push_back({"directory", facts_.path + (at_top ? "" : "/install")});
      if (holds_line_of(COPY, "", known, lines_)) facts_.files.push_back(file);
    }
  }

  text_lines lines_;
  places known_;
  product_facts facts_;
};

// How the head that every generated file has begins, and what is wrong with it.
struct head {
  std::size_t lines = 0;  // the empty one behind it included
  std::optional<std::size_t> refused_line;
};

bool is_comment(std::string_view line) {
  return line.empty() || line.starts_with('#');
}

// The head is of texts that each distribution chooses, over several lines perhaps: none but
// comments will do. Its last line identifies the program.
head head_of(const text_lines& lines) {
  const auto number = [&](auto line) { return static_cast<std::size_t>(line - lines.begin()) + 1; };
  const auto refused = std::ranges::find_if_not(lines, is_comment);
  const auto last = std::find_if(lines.begin(), refused,
                                 [](std::string_view line) { return line.ends_with(SCCSid); });
  if (last != refused) {
    const auto behind = last + 1;
    if (behind == lines.end() || !behind->empty()) return {0, number(behind)};
    return {number(behind), std::nullopt};
  }
  // It was changed where what follows is as it should be.
  const places program = {{"program", std::string(PROGRAM_NAME)}};
  const std::string following = fill_places(lines_of(FILE_HEAD)[1], program);
  const auto next = std::find(lines.begin(), refused, following);
  return {0, next - lines.begin() < 3 || next == refused ? number(refused) : number(next - 3)};
}

// Returns the lines of each product. They end at the line that parts products and at the last rule
// of a product, whichever of them is as it should be.
std::vector<text_lines> sections_of(const text_lines& lines) {
  const std::string_view parting = lines_of(SEPARATOR)[1];
  std::vector<text_lines> sections(1);
  for (const std::string_view line : lines) {
    if (line == parting) sections.emplace_back();
    sections.back().push_back(line);
    if (line.ends_with("-succeeded:")) sections.emplace_back();
  }
  return sections;
}

}  // namespace

std::variant<install_makefile, std::size_t> read_install_makefile(std::string_view text) {
  const text_lines lines = lines_of(text);
  const head before = head_of(lines);
  if (before.refused_line) return *before.refused_line;
  const auto start = static_cast<std::size_t>(lines[before.lines - 1].data() - text.data()) + 1;
  const std::string_view body = text.substr(start);

  install_makefile read;
  read.directory = value_at("directory", FILE_HEAD, {}, lines).value_or("");
  for (const text_lines& section : sections_of(lines)) {
    if (const auto facts = facts_reader(section).read()) read.products.push_back(*facts);
  }
  const std::string composed = makefile_text(read.directory, read.products);
  if (composed == body) return read;
  const auto differs = std::ranges::mismatch(body, composed).in1;
  return before.lines + 1 + static_cast<std::size_t>(std::count(body.begin(), differs, '\n'));
}

}  // namespace morvane
