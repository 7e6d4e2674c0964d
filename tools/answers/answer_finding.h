// What is wrong with the answers of a file, for the run that they are for.
#ifndef MORVANE_ANSWERS_ANSWER_FINDING_H
#define MORVANE_ANSWERS_ANSWER_FINDING_H

#include <cstddef>
#include <string>
#include <string_view>

namespace morvane {

enum class answer_trouble {
  UNREADABLE,  // the line cannot be understood
  MISSING,     // a question without an answer
  LEFT_OVER,   // an answer without a question
  REFUSED,     // an answer that the dialogue did not take
  ENDED,       // the run went no further
};

struct answer_finding {
  answer_trouble trouble{};
  std::size_t line = 0;  // of the answer, or of the section where it is to stand; 0: of neither
  std::string section{};
  std::string name{};
  std::string text{};
  std::string proposal{};  // a value that would do, where one is known
};

// Returns the word for it in reports that programs read.
std::string_view trouble_word(answer_trouble trouble);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_ANSWER_FINDING_H
