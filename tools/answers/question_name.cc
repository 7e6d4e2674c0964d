#include "answers/question_name.h"

#include "answer_file/escaping.h"
#include "answers/supplier.h"

namespace morvane {

namespace {

// The second part of the same name is "NAME/2".
std::string part_label(const product& record, std::string_view part) {
  int same = 0;
  for (const auto& target : record.target_dep) {
    if (target == nullptr) continue;
    if (target->target == part) ++same;
    if (target->target.view().data() == part.data()) break;
  }
  return escape_name(part) + (same > 1 ? "/" + std::to_string(same) : "");
}

}  // namespace

std::string part_name(const product& record, std::string_view part) {
  return "part." + part_label(record, part);
}

std::string type_name(const product& record, std::string_view part, std::string_view category) {
  return "type." + part_label(record, part) + "." + escape_name(category);
}

std::string supplier_name(const product& record, std::string_view part, std::string_view category) {
  return "supplier." + part_label(record, part) + "." + escape_name(category);
}

std::string patch_name(int level) {
  return "patch." + std::to_string(level);
}

std::string section_title(const product& record) {
  const bool installed_here = record.install == product_state::INSTALLED ||
                              record.install == product_state::SELECTED_FOR_RECONFIGURATION;
  return (installed_here ? "installed " : "") + escape_word(record.id);
}

std::optional<std::string> answer_name(const question& asked) {
  if (asked.number == ACCESS_QUESTION.number) return std::string(ACCESS);
  switch (asked.number) {
    case GO_ON_ALL_THE_SAME:
      return std::string(GO_ON_UNSUITABLE);
    case QUIT_WITHOUT_TOOLS:
    case GO_ON_WITHOUT_TOOLS:
      return std::string(GO_ON_TOOLLESS);
    case LINKS_FILE_QUESTION:
      return std::string(LINKS_FILE);
    case UNSELECT_PRODUCT:
    case KEEP_PRODUCT:
      return std::string(KEEP_TOOLLESS);
    case PATH_QUESTION:
      return std::string(DIRECTORY);
    case CREATE_DIRECTORY:
      return std::string(CREATE);
    case OWNER_QUESTION:
      return std::string(OWNER_NAME);
    case GROUP_QUESTION:
      return std::string(GROUP_NAME);
    case KEYWORD_ASK:
    case KEYWORD_ASK_AGAIN:
      return part_name(*asked.product, asked.part);
    case TYPE_CHOICE:
      return type_name(*asked.product, asked.part, asked.category);
    case ACCEPT_CANDIDATE:
    case DIRECTORY_QUESTION:
    case ACCEPT_MISMATCH:
    case LEAVE_PATCH_OPEN:
      return asked.patch ? patch_name(*asked.patch)
                         : supplier_name(*asked.product, asked.part, asked.category);
    default:
      return std::nullopt;
  }
}

std::string identity_of(const question& asked) {
  std::string identity = std::to_string(asked.number);
  if (asked.product != nullptr) identity += " [" + section_title(*asked.product) + "]";
  if (const auto name = answer_name(asked)) identity += " " + *name;
  if (asked.candidate != nullptr) identity += " " + supplier_text(supplier_of(*asked.candidate));
  if (!asked.directory.empty()) identity += " " + std::string(asked.directory);
  return identity;
}

}  // namespace morvane
