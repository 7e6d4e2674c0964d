// Reading an answer file.
#ifndef MORVANE_ANSWER_FILE_ANSWER_READER_H
#define MORVANE_ANSWER_FILE_ANSWER_READER_H

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "answer_file/answer_file.h"

namespace morvane {

inline constexpr std::size_t LONGEST_ANSWER_FILE = 1024UL * 1024;
inline constexpr std::size_t LONGEST_ANSWER_LINE = 4096;  // also once its variables are filled in
inline constexpr std::size_t MOST_ANSWER_FAULTS = 100;    // what is behind them is not read

struct answer_fault {
  std::size_t line = 0;
  std::string text;
};

// The values of variables that are given beside the file, by name.
using variable_values = std::map<std::string, std::string, std::less<>>;

struct answer_reading {
  answer_file file;                  // of use only where there are no faults
  std::vector<answer_fault> faults;  // in the order of the lines
  // Those given beside the file that it has no variable for.
  std::vector<std::string> unknown_variables;
};

// Reads `text`, the content of an answer file. A value that is `given` takes the place of the one
// in the file.
answer_reading read_answers(std::string_view text, const variable_values& given);

}  // namespace morvane

#endif  // MORVANE_ANSWER_FILE_ANSWER_READER_H
