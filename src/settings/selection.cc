#include "settings/selection.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "console/printer.h"
#include "console/question.h"
#include "host/rights.h"
#include "host/tools.h"
#include "messages/table.h"
#include "platform/diagnostic.h"
#include "text/format.h"
#include "text/number.h"

namespace morvane {

namespace {

constexpr std::size_t LONGEST_LINE = 255;

constexpr std::size_t NAME_COLUMN_WIDTH = 60;
constexpr std::size_t VERSION_COLUMN_WIDTH = 11;

// Appends blanks to `cell` up to `width`; a longer one stays as it is.
std::string pad(std::string cell, std::size_t width) {
  cell.resize(std::max(cell.size(), width), ' ');
  return cell;
}

// Prints a line of a product list: `cell`, which holds number and name, and the version columns.
void print_list_line(std::string cell, const product& record) {
  print(pad(std::move(cell), NAME_COLUMN_WIDTH));
  std::string version = fill("%3d.%d", {record.release.version, record.release.subversion});
  if (record.release.minorversion > 0) version += fill(".%d", {record.release.minorversion});
  print(pad(std::move(version), VERSION_COLUMN_WIDTH));
  if (record.release.patch > 0) print(fill("%d", {record.release.patch}));
  print("\n");
}

void undo_selection(product_table& table) {
  for (product& record : table) {
    if (!record.id.empty() && is_selected(record)) unselect(record);
  }
}

// Prints the list of what can be selected; returns whether there is anything. The number of a
// product is that of its slot, so that it is the same in every list.
bool print_offer(const product_table& table) {
  print(fill("\n%s\n\n", {r[PRODUCT_LIST_HEADING]}));
  print("no. : state  product                                        version  patch\n");
  bool offered = false;
  int number = 0;
  for (const product& record : table) {
    ++number;
    const bool available = record.install == product_state::AVAILABLE;
    if (record.id.empty() || (!available && record.install != product_state::INSTALLED)) continue;
    offered = true;
    print_list_line(
        fill(available ? "%3d :   *    %s" : "%3d :   +    %s", {number, product_name(record)}),
        record);
  }
  return offered;
}

void print_selection(const product_table& table) {
  print(fill("\n%s\n\n", {r[SELECTION_HEADING]}));
  print("no. :  product                                              version  patch\n");
  int number = 0;
  for (const product& record : table) {
    ++number;
    if (record.id.empty() || !is_selected(record)) continue;
    print_list_line(fill("%3d :  %s", {number, product_name(record)}), record);
  }
}

// Returns the record with that number as the operator counts, or null, and a warning on standard
// error, where there is none.
product* find_product(product_table& table, int number) {
  const bool in_range = number >= 1 && number <= std::ssize(table);
  product* record = in_range ? table.data() + (number - 1) : nullptr;
  if (record != nullptr && !is_free(*record)) return record;
  diagnose_warning(fill("product number '%d' out of range.", {number}));
  return nullptr;
}

void print_detail(message_number heading, const long_text& detail) {
  print(fill("%s\n", {r[heading]}));
  if (detail) {
    print_with_cr(*detail, screen_width());
    print("\n\n");
  } else {
    print(fill("%s\n\n", {r[NONE]}));
  }
}

void print_tools(const product& record) {
  print(fill("%s\n", {r[TOOLS_HEADING]}));
  std::string tools(r[TOOLS_OF_EVERY_INSTALLATION]);
  for (const std::string_view tool : INST_TOOLS) tools += fill(" %s", {tool});
  print_with_cr(tools, screen_width());
  print("\n");
  if (record.needed_tools) {
    print_with_cr(fill("%s %s", {r[TOOLS_OF_PRODUCT], record.needed_tools}), screen_width());
    print("\n");
  } else if (record.target_dep[0] != nullptr) {
    print(fill("%s %s\n", {r[TOOLS_OF_PRODUCT], r[NONE]}));
  }
  print("\n");
}

void show_details(product_table& table, int number) {
  if (const product* record = find_product(table, number)) {
    print(fill("%s\nP r o d u c t %2d :  %s\n                    %s\n\n",
               {r[RULER], number, product_name(*record), product_version(*record)}));
    print_detail(ABSTRACT_HEADING, record->abstract);
    print_detail(HARDWARE_HEADING, record->hardware);
    print_tools(*record);
  }
  wait_for_enter(plain_question(PRESS_ENTER));
  print(fill("%s\n", {r[RULER]}));
}

// Tells whether the operator may give files to every fixed owner and group of product `number`, and
// prints each that is refused.
bool may_install(const product& record, int number) {
  if (record.descr_avail != FIXED_LISTS) return true;
  bool allowed = true;
  const auto refuse = [&] {
    allowed = false;
    print(fill("%s %d !\n", {r[PRODUCT_REFUSED], number}));
  };
  // All of them, those behind an end mark too: each name that is refused has its line.
  for (const name_text& owner : record.fix_owner) {
    if (!owner.empty() && !check_chown_rights(owner, std::nullopt)) refuse();
  }
  for (const name_text& group : record.fix_group) {
    if (!group.empty() && !check_chown_rights(std::nullopt, group)) refuse();
  }
  return allowed;
}

// Selects product `number`; returns whether that changed anything.
bool select_product(product_table& table, int number) {
  product* record = find_product(table, number);
  if (record == nullptr) return false;
  switch (record->install) {
    case product_state::AVAILABLE:
      if (!may_install(*record, number)) return false;
      record->install = product_state::SELECTED;
      return true;
    case product_state::INSTALLED:
      record->install = product_state::SELECTED_FOR_RECONFIGURATION;
      return true;
    default:  // whatever the reason: those who watch standard error know this line
      diagnose_warning(fill("no tar file available for product number '%d'.", {number}));
      return false;
  }
}

bool select_products(product_table& table, std::string_view line) {
  bool changed = false;
  for (const int number : read_selection(line)) {
    if (select_product(table, number)) changed = true;
  }
  return changed;
}

question selection_question() {
  return {.number = HOW_TO_SELECT_1,
          .text = fill("\n%s\n\n%s\n%s\n",
                       {r[HOW_TO_SELECT_1], r[HOW_TO_SELECT_2], r[HOW_TO_SELECT_3]})};
}

// Shows the list, and details as often as they are asked for, until a line selects; returns whether
// that changed anything.
bool offer_products(product_table& table) {
  for (;;) {
    if (!print_offer(table)) {
      print(fill("%s\n\n", {r[NOTHING_OFFERED]}));
      return false;
    }
    const std::string line = ask(selection_question(), LONGEST_LINE).value_or("");
    const std::optional<int> details = read_details_request(line);
    if (!details) return select_products(table, line);
    show_details(table, *details);
  }
}

}  // namespace

std::vector<int> read_selection(std::string_view line) {
  std::vector<int> numbers;
  while (!line.empty()) numbers.push_back(take_number(line, " \t,;/").value_or(0));
  return numbers;
}

std::optional<int> read_details_request(std::string_view line) {
  const std::size_t mark = line.find('?');
  if (mark == std::string_view::npos) return std::nullopt;
  return number_or_zero(line.substr(mark + 1));
}

void choose_SW_to_install(product_table& table) {
  for (bool confirmed = false; !confirmed;) {
    undo_selection(table);
    if (offer_products(table)) {
      print_selection(table);
    } else {
      print(fill("\n%s", {r[NOTHING_SELECTED]}));
    }
    confirmed = choose_y_or_n(plain_question(CONFIRM_SELECTION));
    if (confirmed) {
      print(fill("\n\n%s\n\n", {r[SELECTION_CONFIRMED]}));
      check_tools_needed(table);
      print("\n");
    }
    print(fill("%s\n", {r[RULER]}));
  }
}

}  // namespace morvane
