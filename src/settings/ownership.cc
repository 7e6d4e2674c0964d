#include "settings/ownership.h"

#include <algorithm>
#include <optional>
#include <string>

#include "console/printer.h"
#include "console/question.h"
#include "host/rights.h"
#include "messages/table.h"
#include "platform/identity.h"
#include "settings/refusal.h"
#include "text/format.h"
#include "text/quoting.h"

namespace morvane {

namespace {

// The difference between the question for the owner and the one for the group.
struct ownership_question {
  message_number number;
  message_number unknown_name;
  bool (*known)(std::string_view name);
  bool (*allowed)(std::string_view name);  // prints why not
};

constexpr ownership_question OWNER = {
    OWNER_QUESTION, UNKNOWN_USER, [](std::string_view name) { return find_user(name).has_value(); },
    [](std::string_view name) { return check_chown_rights(name, std::nullopt); }};

constexpr ownership_question GROUP = {
    GROUP_QUESTION, UNKNOWN_GROUP, group_exists,
    [](std::string_view name) { return check_chown_rights(std::nullopt, name); }};

// Returns the first product of `table` in the directory of `record` whose owner or group, as
// `settled` tells, is settled, or null.
const product* find_neighbour(const product& record, const product_table& table,
                              bool settled_settings::*settled) {
  const auto found = std::find_if(table.begin(), table.end(), [&](const product& other) {
    return on_host_after_run(other) && other.settled.path != path_state::UNSETTLED &&
           other.path == record.path && other.settled.*settled;
  });
  return found == table.end() ? nullptr : &*found;
}

void print_info(const long_text& info) {
  if (!info) return;
  print_with_cr(*info, screen_width());
  print("\n");
}

// Tells whether the host knows `name` and it can stand in the makefile.
bool is_usable(const ownership_question& about, std::string_view name) {
  return about.known(name) && name.size() <= name_text::LONGEST && !holds_special_characters(name);
}

// As `is_usable`; a name that the host knows is not refused without a word.
bool is_usable_answer(const ownership_question& about, std::string_view name) {
  return about.known(name) && !refuse_special_characters("name", name) && is_usable(about, name);
}

// Asks for an owner or a group until the answer is known and the operator may give files to it.
// Enter alone takes `proposal` where that is usable; otherwise it counts as an empty name, which is
// checked, for the complaint, but never accepted.
std::string ask_for_name(const ownership_question& about, const product& record,
                         std::string_view proposal) {
  const bool has_default = is_usable(about, proposal);
  const std::string_view shown = short_product_name(record);
  const question asked = {.number = about.number,
                          .text = has_default
                                      ? fill("%s '%s' (%s) : ", {r[about.number], shown, proposal})
                                      : fill("%s '%s' : ", {r[about.number], shown}),
                          .product = &record,
                          .proposal = has_default ? proposal : ""};
  for (;;) {
    std::optional<std::string> answer = ask(asked);
    if (!answer && has_default) answer = proposal;
    if (answer && !is_usable_answer(about, *answer)) {
      print(fill("%s '%s' !\n", {r[about.unknown_name], answer}));
    } else if (about.allowed(answer.value_or("")) && answer) {
      return *answer;
    }
  }
}

}  // namespace

void get_product_owner(product* record, const product_table& table) {
  if (refuse_invalid_product(record, "get_product_owner") || record->settled.owner) return;
  const product* neighbour = find_neighbour(*record, table, &settled_settings::owner);
  if (neighbour != nullptr) record->owner = neighbour->owner;
  print("\n");
  print_info(record->owner_info);
  record->owner = ask_for_name(OWNER, *record, record->owner);
  record->settled.owner = true;
  const std::optional<user> owner = find_user(record->owner);
  if (owner) record->homedir = owner->home;
}

void get_product_group(product* record, const product_table& table) {
  if (refuse_invalid_product(record, "get_product_group") || record->settled.group) return;
  const product* neighbour = find_neighbour(*record, table, &settled_settings::group);
  if (neighbour != nullptr) record->group = neighbour->group;
  print("\n");
  print_info(record->group_info);
  record->group = ask_for_name(GROUP, *record, record->group);
  record->settled.group = true;
}

void get_product_access(product* record) {
  if (refuse_invalid_product(record, "get_product_access") || record->settled.access) return;
  if (record->other_access_info) {
    print("\n");
    print_with_cr(*record->other_access_info, screen_width());
  }
  const question asked = {.number = ACCESS_QUESTION.number,
                          .text = fill(ACCESS_QUESTION, short_product_name(*record)),
                          .product = record};
  record->other_access = choose_y_or_n(asked);
  record->settled.access = true;
}

std::string_view short_product_name(const product& record) {
  if (!record.name.empty()) return record.name;
  if (!record.full_name.empty()) return record.full_name;
  return record.id;
}

}  // namespace morvane
