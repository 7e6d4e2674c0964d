#include "answer_file/answer_writer.h"

#include <string_view>

#include "answer_file/answer_file.h"
#include "text/white_space.h"
#include "text/words.h"

namespace morvane {

namespace {

constexpr std::size_t COMMENT_WIDTH = 79;

// Returns `text`, whatever it holds, as comment lines.
std::string comment_lines(std::string_view text) {
  std::string printed(text);
  for (char& c : printed) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = ' ';
  }
  std::string lines;
  const std::string sign = "#";
  std::string line = sign;
  for (const std::string_view word : split_words(printed, WHITE_SPACE)) {
    if (line.size() > 1 && line.size() + 1 + word.size() > COMMENT_WIDTH) {
      lines += line + "\n";
      line = sign;
    }
    // A word that is too long is cut: it would not fit a line of the file.
    line += ' ';
    line += word.substr(0, COMMENT_WIDTH);
  }
  return line.size() > 1 ? lines + line + "\n" : lines;
}

}  // namespace

std::string write_answers(const std::vector<written_section>& sections) {
  std::string content = std::string(ANSWER_FILE_HEAD) + "\n";
  for (const written_section& section : sections) {
    if (!section.title.empty()) content += "\n";
    content += comment_lines(section.comment);
    if (!section.title.empty()) content += "[" + section.title + "]\n";
    for (const written_answer& answer : section.answers) {
      content += comment_lines(answer.comment);
      content += answer.name + " =" + (answer.value.empty() ? "" : " ") + answer.value + "\n";
    }
  }
  return content;
}

}  // namespace morvane
