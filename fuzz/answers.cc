// Answer files: the input is the file.
#include "answer_file/answer_reader.h"
#include "answer_file/answer_writer.h"
#include "answer_file/escaping.h"
#include "answers/supplier.h"
#include "target.h"

namespace {

using namespace morvane;

void check_answer(const answer& each) {
  require(!each.name.empty(), "an answer has a name");
  require(each.value.size() <= LONGEST_ANSWER_LINE, "a value is bounded");
  const std::optional<std::string> value = unescape(each.value);
  require(value.has_value(), "what was read can be unescaped");
  require(unescape(escape_value(*value)) == value, "a value survives being written");
  if (const std::optional<supplier> read = read_supplier(each.value)) {
    if (read->directory.empty() == read->id.empty()) return;
    require(read_supplier(supplier_text(*read)) == read, "a supplier survives being written");
  }
}

// Writes what was read; reading that gives the same.
void check_round_trip(const answer_file& file) {
  std::vector<written_section> sections;
  for (const answer_section& section : file.sections) {
    written_section written{"a\ncomment", section.title, {}};
    for (const answer& each : section.answers) {
      written.answers.push_back({"", each.name, each.value});
    }
    sections.push_back(written);
  }
  const answer_reading again = read_answers(write_answers(sections), {});
  if (again.faults.size() == 1 && again.faults[0].text == "the line is too long") return;
  require(again.faults.empty(), "what was written can be read");
  require(again.file.sections.size() == file.sections.size(), "no section is lost");
  for (std::size_t i = 0; i < file.sections.size(); ++i) {
    const auto& before = file.sections[i].answers;
    const auto& after = again.file.sections[i].answers;
    require(before.size() == after.size(), "no answer is lost");
    for (std::size_t k = 0; k < before.size(); ++k) {
      require(before[k].name == after[k].name && before[k].value == after[k].value,
              "an answer is read as it was written");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view content = as_text(data, size);
  const answer_reading reading = read_answers(content, {{"given", "/given"}});
  std::size_t lines = 1;
  for (const char c : content) lines += c == '\n' ? 1 : 0;
  std::size_t last = 0;
  for (const answer_fault& fault : reading.faults) {
    require(fault.line >= last && fault.line <= lines, "faults stand in the order of the lines");
    last = fault.line;
  }
  require(reading.faults.size() <= MOST_ANSWER_FAULTS + 1, "faults are bounded");
  if (!reading.faults.empty()) return 0;
  for (const answer_section& section : reading.file.sections) {
    require(unescape(section.title).has_value(), "a title can be unescaped");
    for (const answer& each : section.answers) check_answer(each);
  }
  check_round_trip(reading.file);
  return 0;
}
