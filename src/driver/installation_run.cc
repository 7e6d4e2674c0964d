#include "driver/installation_run.h"

#include "console/header.h"
#include "console/leave.h"
#include "console/leave_without.h"
#include "console/printer.h"
#include "console/question.h"
#include "depend/order.h"
#include "depend/patches.h"
#include "depend/resolution.h"
#include "host/operating_system.h"
#include "host/rights.h"
#include "messages/table.h"
#include "output/makefile.h"
#include "output/settings_file.h"
#include "platform/effects.h"
#include "settings/ownership.h"
#include "settings/path.h"
#include "settings/selection.h"
#include "text/format.h"

namespace morvane {

namespace {

void check_host() {
  if (check_host_system()) return;
  print(fill("\n%s\n", {r[HOST_UNSUITABLE]}));
  if (!choose_y_or_n(plain_question(GO_ON_ALL_THE_SAME))) quit();
}

// Asks for everything that `record` needs.
void ask_for_settings(product& record, product_table& table) {
  print(fill("\nP r o d u c t : %s\n                %s\n",
             {product_name(record), product_version(record)}));
  // An installed product stays where it is, and one that was given up is not asked for it again.
  if (record.install == product_state::SELECTED) get_product_path(&record);
  get_product_owner(&record, table);
  get_product_group(&record, table);
  get_product_access(&record);
  get_product_depend(record, table);
}

bool wants_to_change(const product& record) {
  return choose_y_or_n({.number = CHANGE_SETTINGS,
                        .text = fill("\n\n%s '%s' %s ?", {r[CHANGE_SETTINGS], product_name(record),
                                                          product_version(record)}),
                        .product = &record});
}

// Settles the settings of `record`, as often as the operator wants to change them. What was settled
// before stays settled.
void configure_product(product& record, product_table& table) {
  const settled_settings settled_before = record.settled;
  const std::size_t first_free = get_next_free_product(table);

  ask_for_settings(record, table);
  while (wants_to_change(record)) {
    record.settled = settled_before;
    undo_get_product_depend(record, table, first_free);
    print(fill("\n%s\n", {r[SETTINGS_ASKED_AGAIN]}));
    ask_for_settings(record, table);
  }

  // Only now: until the settings are accepted the path could still change.
  export_path_to_patch_depend(record);
  // A product that was given up on the way is not.
  if (record.install == product_state::SELECTED) record.install = product_state::CONFIGURED;
  print(fill("\n%s\n", {r[RULER]}));
}

// Settles what can be before the first path is asked for: a patch goes where its original is. What
// stays open is asked about with the settings of its product.
void settle_patches(product_table& table) {
  for (product& record : table) get_patch_depend(table, &record, false);
}

void configure_products(product_table& table) {
  for (product& record : table) {
    if (is_selected(record)) configure_product(record, table);
  }
}

void write_settings_files(const product_table& table) {
  for (const product& record : table) {
    if (is_ordered(record)) write_dat_file(record);
  }
}

void write_installation_makefile(product_table& table) {
  installation_order order;
  get_inst_order(table, order);
  write_makefile(order);
}

// Another run in this directory tries groups on a file of the makefile's name and removes it.
[[noreturn]] void ask_last_question() {
  if (!choose_y_or_n(plain_question(LAST_QUESTION))) quit();
  if (!on_host().exists(MAKEFILE_NAME)) leave_without_file(MAKEFILE_NAME);
  return_code = 0;
  quit();
}

}  // namespace

void run_installation(product_table& table) {
  show_install_header();
  check_host();
  choose_SW_to_install(table);
  settle_patches(table);
  configure_products(table);
  write_settings_files(table);
  write_installation_makefile(table);
  ask_last_question();
}

}  // namespace morvane
