#include "host/tools.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

constexpr const char* QUIT_QUESTION = "\n<147><148> <35>\n";
constexpr const char* GO_ON_QUESTION = "\n\n<149>\n<150>\n<151> <35>\n";

outcome search(const std::string& path, std::string_view tool) {
  use_test_messages();
  return in_child("", [&] {
    setenv("PATH", path.c_str(), 1);
    return check_tool_avail(tool) ? "found" : "missing";
  });
}

// A directory whose "bin", alone on PATH, holds the standard tools but for `left_out`.
class tools_directory {
 public:
  explicit tools_directory(std::string_view left_out = "") {
    use_test_messages();
    for (const std::string_view tool : INST_TOOLS) {
      if (tool != left_out) add(tool);
    }
  }
  void add(std::string_view tool) const { write_program("bin/" + std::string(tool), ""); }

  // Checks the tools that `table` needs, and returns the states of its products.
  outcome check(std::string_view typed, product_table& table) const {
    return in_child(typed, [&] { return check_here(table); });
  }
  // The same, with everything that is said in `out`.
  outcome check_in_order(std::string_view typed, product_table& table) const {
    return in_child_in_order(typed, [&] { return check_here(table); });
  }
  std::string check_here(product_table& table) const {
    setenv("PATH", (directory_.path() + "/bin").c_str(), 1);
    check_tools_needed(table);
    return states(table);
  }

 private:
  scratch_directory directory_;
};

product& add_product_with_tools(product_table& table, std::string_view id, const long_text& tools,
                                product_state state = product_state::SELECTED) {
  product& record = add_product(table, id, state);
  record.needed_tools = tools;
  return record;
}

std::string unselect_question(std::string_view product) {
  return "\n<147>\n<152> '" + std::string(product) + "'? <35>\n";
}

std::string keep_question(std::string_view product) {
  return "\n\n<149>\n<150>\n<153> '" + std::string(product) + "'? <35>\n";
}

TEST(ToolSearch, LooksIntoAbsoluteDirectoriesOnly) {
  const scratch_directory directory;
  const std::string at = directory.path();
  write_program("one/first", "");
  write_program("bin/relative", "");
  write_program("here", "");
  write_program("two/last", "");
  const std::string path = at + "/one:bin::" + at + "/two";
  EXPECT_EQ(search(path, "first").result, "found");
  EXPECT_EQ(search(path, "last").result, "found");
  EXPECT_EQ(search(path, "last").written(), "");
  EXPECT_EQ(search(path, "relative").result, "missing");
  EXPECT_EQ(search(path, "here").result, "missing");
  EXPECT_EQ(search(path, "relative").err, "        relative : <146>\n");
  EXPECT_EQ(search(path, "relative").out, "");
}

TEST(ToolSearch, FindsExecutablesOnly) {
  const scratch_directory directory;
  write_file("one/tool", "");
  write_program("two/tool", "");
  const std::string one = directory.path() + "/one", two = directory.path() + "/two";
  EXPECT_EQ(search(one, "tool").result, "missing");
  EXPECT_EQ(search(one + ":" + two, "tool").result, "found");
}

TEST(ToolSearch, TakesLongDirectoriesWhole) {
  const scratch_directory directory;
  for (const std::size_t length : {62U, 63U, 64U, 65U, 200U}) {
    // The length of "DIRECTORY/tool".
    std::string path = directory.path() + "/";
    path.append(length - path.size() - std::strlen("/tool"), 'd');
    write_program(path + "/tool", "");
    EXPECT_EQ(search(path, "tool").result, "found") << length;
  }
}

TEST(ToolSearch, FindsNothingWithoutPath) {
  use_test_messages();
  for (const bool set : {false, true}) {
    const outcome seen = in_child("", [&] {
      set ? setenv("PATH", "", 1) : unsetenv("PATH");
      return check_tool_avail("sh") ? "found" : "missing";
    });
    EXPECT_EQ(seen.result, "missing");
    EXPECT_EQ(seen.err, "        sh : <146>\n");
  }
}

TEST(NeededTools, NothingIsSaidWhereAllAreThere) {
  const tools_directory tools;
  tools.add("awk");
  product_table table;
  add_product_with_tools(table, "a", "awk tar");
  add_product_with_tools(table, "b", std::nullopt);
  add_product_with_tools(table, "c", "");
  add_product_with_tools(table, "d", " \t\r\f\v");
  const outcome seen = tools.check_in_order("", table);
  EXPECT_EQ(seen.out, "");
  EXPECT_EQ(seen.result, "2 2 2 2");
}

TEST(NeededTools, AMissingStandardToolIsGoneOnWithoutByNoAndYes) {
  const tools_directory tools("diff");
  product_table table;
  const std::string line = "        diff : <146>\n";
  for (const char* typed : {"y\n", "\n", "q\n", ""}) {
    const outcome seen = tools.check_in_order(typed, table);
    EXPECT_EQ(seen.out, line + QUIT_QUESTION + "<299>");
    EXPECT_EQ(seen.status, 1);
    EXPECT_FALSE(seen.returned);
  }
  EXPECT_EQ(tools.check_in_order("n\nn\n", table).out,
            line + QUIT_QUESTION + GO_ON_QUESTION + "<299>");
  const outcome seen = tools.check_in_order("n\ny\n", table);
  EXPECT_EQ(seen.out, line + QUIT_QUESTION + GO_ON_QUESTION + "\n");
  EXPECT_TRUE(seen.returned);
}

TEST(NeededTools, EveryMissingStandardToolIsReportedInOrder) {
  use_test_messages();
  const outcome seen = in_child("", [] {
    setenv("PATH", "/nonexistent", 1);
    product_table table;
    check_tools_needed(table);
    return "";
  });
  EXPECT_EQ(seen.err,
            "        tar : <146>\n        diff : <146>\n        chmod : <146>\n"
            "        chgrp : <146>\n        chown : <146>\n        mkdir : <146>\n"
            "        cat : <146>\n        find : <146>\n        cut : <146>\n");
}

TEST(NeededTools, AMissingStandardToolIsSearchedAgainForAProduct) {
  const tools_directory tools("cut");
  product_table table;
  add_product_with_tools(table, "a", "cut");
  const outcome seen = tools.check("n\ny\ny\n", table);
  EXPECT_EQ(seen.err, "        cut : <146>\n        cut : <146>\n");
  EXPECT_EQ(seen.result, "1");
}

TEST(NeededTools, AreReportedAndAskedAboutForEveryProduct) {
  const tools_directory tools;
  product_table table;
  add_product_with_tools(table, "a", "awk").full_name = "Product A";
  add_product_with_tools(table, "b", "awk");
  const outcome seen = tools.check_in_order("y\ny\n", table);
  const std::string line = "        awk : <146>\n";
  EXPECT_EQ(seen.out, line + unselect_question("Product A") + line + unselect_question("b"));
  EXPECT_EQ(seen.result, "1 1");
}

TEST(NeededTools, AProductIsKeptByNoAndYes) {
  const tools_directory tools;
  const struct {
    const char* typed;
    product_state before;
    const char* after;
  } cases[] = {
      {"y\n", product_state::SELECTED, "1"},
      {"\n", product_state::SELECTED_FOR_RECONFIGURATION, "10"},
      {"n\nn\n", product_state::SELECTED, "1"},
      {"n\nn\n", product_state::SELECTED_FOR_RECONFIGURATION, "10"},
      {"n\ny\n", product_state::SELECTED, "2"},
      {"n\n\n", product_state::SELECTED_FOR_RECONFIGURATION, "11"},
  };
  for (const auto& [typed, before, after] : cases) {
    product_table table;
    add_product_with_tools(table, "a", "awk", before);
    const outcome seen = tools.check(typed, table);
    EXPECT_EQ(seen.result, after) << typed;
    EXPECT_EQ(seen.out, unselect_question("a") + (*typed == 'n' ? keep_question("a") : ""));
  }
}

TEST(NeededTools, AreOfNoInterestInOtherStates) {
  const tools_directory tools;
  product_table table;
  for (const auto state :
       {product_state::INITIALISED, product_state::AVAILABLE, product_state::CONFIGURED,
        product_state::ACCEPTED, product_state::INSTALLED}) {
    add_product_with_tools(table, "a", "awk", state);
  }
  EXPECT_EQ(tools.check_in_order("", table).out, "");
}

TEST(NeededTools, AreSeparatedByWhiteSpaceOtherThanNewlines) {
  const tools_directory tools;
  product_table table;
  add_product_with_tools(table, "a", " a\tb\rc\fd\ve f\ng ");
  EXPECT_EQ(tools.check("y\n", table).err,
            "        a : <146>\n        b : <146>\n        c : <146>\n        d : <146>\n"
            "        e : <146>\n        f\ng : <146>\n");
}

// An operator who removes the program "bin/late" before he answers yes.
ssize_t remove_and_answer(void*, char* buffer, std::size_t size) {
  if (std::remove("bin/late") != 0 || size < 2) return 0;
  std::memcpy(buffer, "y\n", 2);
  return 2;
}

// Checks two products: the first needs `others` tools, "late" and one that is missing, the second
// only "late", which has gone by then.
outcome check_with_known_tools(int others) {
  const tools_directory tools;
  product_table table;
  std::string list;
  for (int i = 0; i < others; ++i) {
    tools.add("t" + std::to_string(i));
    list += "t" + std::to_string(i) + " ";
  }
  tools.add("late");
  add_product_with_tools(table, "a", list + "late missing");
  add_product_with_tools(table, "b", "late");
  return in_child("", [&] {
    stdin = fopencookie(nullptr, "r", {remove_and_answer, nullptr, nullptr, nullptr});
    return tools.check_here(table);
  });
}

TEST(NeededTools, AToolThatWasFoundIsNotSearchedAgain) {
  const outcome seen = check_with_known_tools(0);
  EXPECT_EQ(seen.err, "        missing : <146>\n");
  EXPECT_EQ(seen.result, "1 2");
}

TEST(NeededTools, AHundredFoundToolsAreRemembered) {
  const int standard = static_cast<int>(INST_TOOLS.size());
  EXPECT_EQ(check_with_known_tools(100 - standard - 1).result, "1 2");
  const outcome seen = check_with_known_tools(100 - standard);
  EXPECT_EQ(seen.err, "        missing : <146>\n        late : <146>\n");
  EXPECT_EQ(seen.out, unselect_question("a") + unselect_question("b") + "<299>");
}

}  // namespace
}  // namespace morvane
