#include "answers/recorder.h"

#include <algorithm>

#include "answer_file/escaping.h"
#include "answers/question_name.h"
#include "answers/supplier.h"
#include "messages/table.h"
#include "settings/ownership.h"
#include "text/format.h"
#include "text/text.h"

namespace morvane {

namespace {

std::string yes_or_no(bool yes) {
  return std::string(yes ? YES_VALUE : NO_VALUE);
}

// Tells whether the operator selected the product of which this was asked: of others only what
// their patches belong to is asked.
bool was_selected(const std::set<std::string, std::less<>>& names) {
  return std::ranges::any_of(names,
                             [](const std::string& name) { return !name.starts_with("patch."); });
}

// Collects the lines of a section: those that were asked for.
class section_writer {
 public:
  explicit section_writer(const std::set<std::string, std::less<>>& asked) : asked_(asked) {}

  void add(std::string_view name, std::string_view comment, std::string value) {
    if (!asked_.contains(name)) return;
    answers_.push_back({std::string(comment), std::string(name), std::move(value)});
  }

  // One line for all needs of the same name.
  std::vector<written_answer> take() {
    std::vector<written_answer> once;
    for (written_answer& each : answers_) {
      const bool known = std::ranges::any_of(once, [&](const written_answer& other) {
        return other.name == each.name && other.value == each.value;
      });
      if (!known) once.push_back(std::move(each));
    }
    return once;
  }

 private:
  const std::set<std::string, std::less<>>& asked_;
  std::vector<written_answer> answers_;
};

void add_parts(const product& record, section_writer& section) {
  for (const auto& target : record.target_dep) {
    if (target == nullptr) continue;
    const bool again = record.install == product_state::SELECTED_FOR_RECONFIGURATION;
    const long_text& text = again && target->re_ask ? target->re_ask : target->ask;
    section.add(part_name(record, target->target), text.value_or(""),
                yes_or_no(target->install != target_state::NOT_WANTED));
    for (const auto& category : target->category_dep) {
      if (category == nullptr || category->product == nullptr) continue;
      const type_dep* type = chosen_alternative(*category);
      section.add(type_name(record, target->target, category->category), r[TYPE_CHOICE],
                  type == nullptr ? "" : escape_value(type->type));
      section.add(supplier_name(record, target->target, category->category), category->text,
                  supplier_text(supplier_of(*category->product)));
    }
  }
}

void add_patches(const product& record, section_writer& section) {
  for (const auto& [level, supplier] : record.needed_patches) {
    if (level < 0) continue;
    const std::string comment =
        level > 0 ? fill("%s %d", {r[PATCH_NEEDS], level}) : std::string(r[PATCH_NEEDS]);
    section.add(
        patch_name(level), comment,
        supplier == nullptr ? std::string(LEFT_OPEN) : supplier_text(supplier_of(*supplier)));
  }
}

}  // namespace

int recorder::next(const question& asked) {
  if (!in_answer_) begin(asked);
  in_answer_ = asked.number != PRESS_ENTER;  // which takes one byte, whatever it is
  const int c = source_(asked);
  if (c >= 0) hear(asked, static_cast<char>(c));
  return c;
}

void recorder::begin(const question& asked) {
  const std::optional<std::string> name = answer_name(asked);
  if (asked.product == nullptr) {
    if (asked.number == GO_ON_ALL_THE_SAME) general_.insert(GO_ON_UNSUITABLE);
    if (asked.number == QUIT_WITHOUT_TOOLS) general_.insert(GO_ON_TOOLLESS);
    return;
  }
  asked_names& about = products_[asked.product];
  if (asked.number == CHANGE_SETTINGS) {
    about.asked_to_change = true;
    return;
  }
  if (about.asked_to_change && is_selected(*asked.product)) {  // else it was given up as it was
    std::erase_if(about.names, [](const std::string& each) {
      return each != KEEP_TOOLLESS && !each.starts_with("patch.");
    });
  }
  about.asked_to_change = false;
  if (asked.number == CREATE_DIRECTORY) created_.emplace(asked.directory);
  if (name) about.names.insert(*name);
}

// What a record does not keep is taken from what was typed: the last line counts, those before it
// were refused.
void recorder::hear(const question& asked, char c) {
  const bool about_links = asked.number == LINKS_FILE_QUESTION;
  if (c != '\n') {
    if (about_links) line_ += c;
    return;
  }
  if (about_links) {
    std::string file(until_nul(std::string_view(line_).substr(0, LONGEST_ANSWER)));
    if (line_.empty()) file = asked.proposal;
    if (links_file_ && !links_asked_before_ && *links_file_ != file) links_file_differs_ = true;
    links_file_ = file;
  }
  links_asked_before_ = about_links;
  line_.clear();
  in_answer_ = false;
}

std::vector<written_section> recorder::results() const {
  std::vector<written_section> sections;
  for (const auto& [record, asked] : products_) {
    if (!asked.names.empty()) sections.push_back(product_section(*record, asked));
  }
  std::ranges::sort(sections, {}, &written_section::title);
  sections.insert(sections.begin(), general_section());
  return sections;
}

std::string recorder::conflict() const {
  if (links_file_differs_) return std::string(LINKS_FILE);
  for (const written_section& section : results()) {
    std::set<std::string_view> names;
    for (const written_answer& each : section.answers) {
      if (!names.insert(each.name).second) return "[" + section.title + "] " + each.name;
    }
  }
  return "";
}

written_section recorder::general_section() const {
  std::set<std::string> selected;
  std::set<std::string> reconfigured;
  for (const auto& [record, asked] : products_) {
    if (!was_selected(asked.names)) continue;
    const bool installed_here = record->install == product_state::INSTALLED ||
                                record->install == product_state::SELECTED_FOR_RECONFIGURATION;
    (installed_here ? reconfigured : selected).insert(escape_word(record->id));
  }
  const auto list = [](const std::set<std::string>& words) {
    std::string line;
    for (const std::string& word : words) line += (line.empty() ? "" : " ") + word;
    return line;
  };
  written_section section;
  const auto add = [&](std::string_view name, message_number comment, std::string value) {
    section.answers.push_back({std::string(r[comment]), std::string(name), std::move(value)});
  };
  if (general_.contains(GO_ON_UNSUITABLE)) {
    add(GO_ON_UNSUITABLE, GO_ON_ALL_THE_SAME, yes_or_no(true));
  }
  add(PRODUCTS, HOW_TO_SELECT_1, list(selected));
  if (!reconfigured.empty()) add(RECONFIGURE, HOW_TO_SELECT_1, list(reconfigured));
  if (general_.contains(GO_ON_TOOLLESS)) {
    add(GO_ON_TOOLLESS, GO_ON_WITHOUT_TOOLS, yes_or_no(true));
  }
  if (links_file_) add(LINKS_FILE, LINKS_FILE_QUESTION, escape_value(*links_file_));
  return section;
}

written_section recorder::product_section(const product& record, const asked_names& asked) const {
  std::set<std::string, std::less<>> names = asked.names;
  if (names.contains(DIRECTORY) && created_.contains(record.path.view())) {
    names.emplace(CREATE);
  } else if (const auto found = names.find(CREATE); found != names.end()) {
    names.erase(found);
  }
  section_writer section(names);
  // What was given up for its tools is asked nothing more.
  section.add(KEEP_TOOLLESS, r[KEEP_PRODUCT], yes_or_no(names.contains(ACCESS)));
  section.add(DIRECTORY, r[PATH_QUESTION], escape_value(record.path));
  section.add(CREATE, r[CREATE_DIRECTORY], yes_or_no(true));
  section.add(OWNER_NAME, r[OWNER_QUESTION], escape_value(record.owner));
  section.add(GROUP_NAME, r[GROUP_QUESTION], escape_value(record.group));
  section.add(ACCESS, fill(ACCESS_QUESTION, short_product_name(record)),
              yes_or_no(record.other_access));
  add_parts(record, section);
  add_patches(record, section);
  return {fill("%s, %s", {product_name(record), product_version(record)}), section_title(record),
          section.take()};
}

}  // namespace morvane
