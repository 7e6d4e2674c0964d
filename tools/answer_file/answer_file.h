// An answer file: the results of a run, by their names. morvane.answers(5) describes it.
#ifndef MORVANE_ANSWER_FILE_ANSWER_FILE_H
#define MORVANE_ANSWER_FILE_ANSWER_FILE_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

// The first line of every answer file.
inline constexpr std::string_view ANSWER_FILE_HEAD = "morvane answers 1";

// Names and values stand here as they do in the file, but for the variables, which are filled in:
// `unescape` gives what they say.
struct answer {
  std::string name;
  std::string value;
  std::size_t line = 0;
};

struct answer_section {
  std::string title;  // empty for the lines above the first section
  std::size_t line = 0;
  std::vector<answer> answers;
};

struct answer_file {
  std::vector<answer_section> sections;
};

// Returns the section of that title, or null.
const answer_section* find_section(const answer_file& file, std::string_view title);

// Returns the answer of that name in that section, or null.
const answer* find_answer(const answer_file& file, std::string_view title, std::string_view name);

}  // namespace morvane

#endif  // MORVANE_ANSWER_FILE_ANSWER_FILE_H
