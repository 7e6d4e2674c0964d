#include "answer_file/answer_file.h"

#include <algorithm>

namespace morvane {

const answer_section* find_section(const answer_file& file, std::string_view title) {
  const auto found = std::ranges::find(file.sections, title, &answer_section::title);
  return found == file.sections.end() ? nullptr : &*found;
}

const answer* find_answer(const answer_file& file, std::string_view title, std::string_view name) {
  const answer_section* section = find_section(file, title);
  if (section == nullptr) return nullptr;
  const auto found = std::ranges::find(section->answers, name, &answer::name);
  return found == section->answers.end() ? nullptr : &*found;
}

}  // namespace morvane
