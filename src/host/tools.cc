#include "host/tools.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "console/leave.h"
#include "console/printer.h"
#include "console/question.h"
#include "messages/table.h"
#include "platform/diagnostic.h"
#include "text/format.h"
#include "text/white_space.h"
#include "text/words.h"

namespace morvane {

namespace {

// Bounds the time that a long list of tools takes; a tool found beyond it is searched each time.
constexpr std::size_t MOST_KNOWN_TOOLS = 100;

// The tools that were found, so that none of them is searched again. A missing one is searched, and
// thus reported, for each product that needs it.
class known_tools {
 public:
  bool available(std::string_view tool) {
    if (std::find(names_.begin(), names_.end(), tool) != names_.end()) return true;
    if (!check_tool_avail(tool)) return false;
    if (names_.size() < MOST_KNOWN_TOOLS) names_.emplace_back(tool);
    return true;
  }

 private:
  std::vector<std::string> names_;
};

void warn_of_missing_tools() {
  print(fill("\n\n%s\n%s\n", {r[WITHOUT_TOOLS_1], r[WITHOUT_TOOLS_2]}));
}

bool ask_about_product(message_number number, const product& record) {
  return choose_y_or_n({.number = number,
                        .text = fill("%s '%s'?", {r[number], product_name(record)}),
                        .product = &record});
}

void check_standard_tools(known_tools& known) {
  bool missing = false;
  for (const std::string_view tool : INST_TOOLS) {
    if (!known.available(tool)) missing = true;
  }
  if (!missing) return;
  print(fill("\n%s", {r[TOOLS_MISSING]}));
  if (choose_y_or_n(plain_question(QUIT_WITHOUT_TOOLS))) quit();
  warn_of_missing_tools();
  if (!choose_y_or_n(plain_question(GO_ON_WITHOUT_TOOLS))) quit();
  print("\n");
}

bool misses_a_tool(const product& record, known_tools& known) {
  if (!record.needed_tools) return false;
  bool missing = false;
  // A newline separates nothing: the tools of two entries meet in one word, as the manual tells.
  for (const std::string_view tool : split_words(*record.needed_tools, BLANKS)) {
    if (!known.available(tool)) missing = true;
  }
  return missing;
}

bool keep_without_tools(const product& record) {
  print_with_cr(fill("\n%s", {r[TOOLS_MISSING]}), screen_width());
  if (ask_about_product(UNSELECT_PRODUCT, record)) return false;
  warn_of_missing_tools();
  return ask_about_product(KEEP_PRODUCT, record);
}

}  // namespace

bool check_tool_avail(std::string_view tool) {
  const char* path = std::getenv("PATH");
  for (const std::string_view directory : split_words(path == nullptr ? "" : path, ":")) {
    if (!directory.starts_with('/')) continue;
    if (access(fill("%s/%s", {directory, tool}).c_str(), X_OK) == 0) return true;
  }
  diagnose(fill("        %s : %s\n", {tool, r[TOOL_NOT_FOUND]}));
  return false;
}

void check_tools_needed(product_table& table) {
  known_tools known;
  check_standard_tools(known);
  for (product& record : table) {
    if (!is_selected(record) || !misses_a_tool(record, known)) continue;
    if (!keep_without_tools(record)) unselect(record);
  }
}

}  // namespace morvane
