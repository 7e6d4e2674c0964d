#include <gtest/gtest.h>

#include "answer_file/answer_reader.h"
#include "answer_file/answer_writer.h"
#include "answer_file/escaping.h"

namespace morvane {
namespace {

// The content, read back: titles, names and values in a line each, or the faults.
std::string read_back(std::string_view text, const variable_values& given = {}) {
  const answer_reading reading = read_answers(text, given);
  std::string shown;
  for (const answer_fault& fault : reading.faults) {
    shown += std::to_string(fault.line) + ": " + fault.text + "\n";
  }
  if (!shown.empty()) return shown;
  for (const answer_section& section : reading.file.sections) {
    if (!section.title.empty()) shown += "[" + section.title + "]\n";
    for (const answer& each : section.answers) {
      shown += std::to_string(each.line) + " " + each.name + "=" + each.value + "\n";
    }
  }
  for (const std::string& name : reading.unknown_variables) shown += "unknown " + name + "\n";
  return shown;
}

std::string with_head(std::string_view lines) {
  return "morvane answers 1\n" + std::string(lines);
}

TEST(AnswerReader, ReadsSectionsAndTrimsWhatStandsAroundNamesAndValues) {
  EXPECT_EQ(read_back(with_head("# comment\nproducts =\n\n [ a ]\n\towner  =  root \t\n")),
            "3 products=\n[a]\n6 owner=root\n");
}

TEST(AnswerReader, FillsVariablesInAndTakesThoseThatAreGiven) {
  const std::string text =
      with_head("variable a = /x\nvariable b_2 = ${a}/y\n[p]\nd = ${b_2}/${a}z\n");
  EXPECT_EQ(read_back(text), "[p]\n5 d=/x/y//xz\n");
  EXPECT_EQ(read_back(text, {{"a", "/q"}}), "[p]\n5 d=/q/y//qz\n");
  EXPECT_EQ(read_back(text, {{"c", "/q"}}), "[p]\n5 d=/x/y//xz\nunknown c\n");
}

TEST(AnswerReader, SaysWhatIsWrongInWhichLine) {
  const struct {
    std::string_view lines;
    std::string_view faults;
  } rows[] = {
      {"owner root\n", "2: neither 'name = value', nor '[section]', nor a comment\n"},
      {"= x\n", "2: there is no name\n"},
      {"[a]\nowner =\n", "3: 'owner' has no value\n"},
      {"[a]\nproducts =\n", "3: 'products' has no value\n"},
      {"[a]\nx = 1\nx = 2\n", "4: 'x' stands in line 3 already\n"},
      {"[a]\n[b]\n[a]\n", "4: [a] stands in line 2 already\n"},
      {"[a\n", "2: not '[section]'\n"},
      {"[]\n", "2: not '[section]'\n"},
      {"[a%2]\n", "2: '%' is not followed by two hexadecimal digits\n"},
      {"[a]\nx = %zz\n", "3: '%' is not followed by two hexadecimal digits\n"},
      {"[a]\nx = %00\n", "3: '%' is not followed by two hexadecimal digits\n"},
      {"[a]\nx = %0A\n", "3: '%' is not followed by two hexadecimal digits\n"},
      {"x = ${y}\n", "2: there is no variable 'y' above\n"},
      {"x = ${y\n", "2: '$' does not begin a '${variable}'\n"},
      {"x = a$b\n", "2: '$' does not begin a '${variable}'\n"},
      {"variable a-b = x\n", "2: the name of a variable holds letters, digits and '_' alone\n"},
      {"variable a = x\nvariable a = y\n", "3: variable 'a' is given twice\n"},
      {"[s]\nvariable a = x\n", "3: a variable stands above the first section\n"},
      {"x = \x01\n", "2: the line holds control characters\n"},
      {"x = y\r\n", "2: the line holds control characters\n"},
      {"x = y", "2: the line does not end: the file was cut off\n"},
      {"y\nx = y\nz\n",
       "2: neither 'name = value', nor '[section]', nor a comment\n"
       "4: neither 'name = value', nor '[section]', nor a comment\n"},
  };
  for (const auto& row : rows) EXPECT_EQ(read_back(with_head(row.lines)), row.faults) << row.lines;
  EXPECT_EQ(read_back(""), "0: the file is empty\n");
  EXPECT_EQ(read_back("morvane answers 2\nx\n"), "1: the first line is not 'morvane answers 1'\n");
  EXPECT_EQ(read_back(std::string_view("morvane answers 1\nx = \0y\n", 25)),
            "2: the line holds control characters\n");
}

TEST(AnswerReader, HasLimits) {
  const std::string longest(LONGEST_ANSWER_LINE - 4, 'v');
  EXPECT_EQ(read_back(with_head("x = " + longest + "\n")), "2 x=" + longest + "\n");
  EXPECT_EQ(read_back(with_head("x = " + longest + "v\n")), "2: the line is too long\n");

  const std::string half = "variable h = " + std::string(LONGEST_ANSWER_LINE / 2, 'h') + "\n";
  EXPECT_EQ(read_back(with_head(half + "x = ${h}${h}\n")).substr(0, 5), "3 x=h");
  EXPECT_EQ(read_back(with_head(half + "x = ${h}${h}v\n")), "3: the value is too long\n");

  const std::string head = with_head("#");
  const std::string comment = std::string(LONGEST_ANSWER_LINE - 1, 'c') + "\n";
  std::string file = head;
  while (file.size() + comment.size() + 1 <= LONGEST_ANSWER_FILE) file += comment + "#";
  file += std::string(LONGEST_ANSWER_FILE - file.size() - 1, 'c') + "\n";
  ASSERT_EQ(file.size(), LONGEST_ANSWER_FILE);
  EXPECT_EQ(read_back(file), "");
  EXPECT_EQ(read_back(file + "\n"), "0: the file is too long\n");

  std::string faulty;
  for (std::size_t i = 0; i < MOST_ANSWER_FAULTS + 1; ++i) faulty += "fault\n";
  EXPECT_EQ(read_answers(with_head(faulty), {}).faults.size(), MOST_ANSWER_FAULTS);
}

TEST(Escaping, KeepsWhatWouldMeanSomethingElse) {
  EXPECT_EQ(escape_value(" a b$%\t\x7f "), "%20a b%24%25%09%7F%20");
  EXPECT_EQ(escape_value(" "), "%20");
  EXPECT_EQ(escape_word("a b=[c]#.d"), "a%20b%3D%5Bc%5D%23.d");
  EXPECT_EQ(escape_name("lib.so x/y"), "lib%2Eso%20x%2Fy");
  EXPECT_EQ(escape_value("gr\xc3\xbc\xc3\x9f"), "gr\xc3\xbc\xc3\x9f");
}

TEST(Escaping, IsTakenBack) {
  std::string all;
  for (int c = 1; c < 256; ++c) {
    if (c != '\n') all += static_cast<char>(c);
  }
  EXPECT_EQ(unescape(escape_value(all)), all);
  EXPECT_EQ(unescape(escape_word(all)), all);
  EXPECT_EQ(unescape(escape_name(all)), all);
  for (const char* wrong : {"%", "%2", "a%", "%2g", "%2a", "%00", "%0A"}) {
    EXPECT_EQ(unescape(wrong), std::nullopt) << wrong;
  }
}

TEST(AnswerWriter, WritesWhatTheReaderReads) {
  const std::string text = write_answers(
      {{"", "", {{"Which?", "products", "a"}, {"", "reconfigure", ""}}},
       {"A product\nof two lines", "a", {{std::string(100, 'w') + " end", "owner", "root"}}}});
  EXPECT_EQ(text,
            "morvane answers 1\n# Which?\nproducts = a\nreconfigure =\n\n"
            "# A product of two lines\n[a]\n# " +
                std::string(79, 'w') + "\n# end\nowner = root\n");
  EXPECT_EQ(read_back(text), "3 products=a\n4 reconfigure=\n[a]\n10 owner=root\n");
}

}  // namespace
}  // namespace morvane
