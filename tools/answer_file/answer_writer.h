// Writing an answer file.
#ifndef MORVANE_ANSWER_FILE_ANSWER_WRITER_H
#define MORVANE_ANSWER_FILE_ANSWER_WRITER_H

#include <string>
#include <vector>

namespace morvane {

// Names, values and titles as they stand in the file; comments may be any text.
struct written_answer {
  std::string comment;
  std::string name;
  std::string value;
};

struct written_section {
  std::string comment;
  std::string title;  // empty for the lines above the first section
  std::vector<written_answer> answers;
};

// Returns the content of the file with these sections.
std::string write_answers(const std::vector<written_section>& sections);

}  // namespace morvane

#endif  // MORVANE_ANSWER_FILE_ANSWER_WRITER_H
