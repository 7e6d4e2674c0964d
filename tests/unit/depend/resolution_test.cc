#include "depend/resolution.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

const std::string FIRST = "\n<92> 'first' ...\n";
const std::string SECOND = "\n<92> 'second' ...\n";

// "app" with the targets "first", which needs a product of category DB, and "second", and a
// product "db" of that category that is installed in this run as well.
class app_table {
 public:
  app_table() { use_test_messages(); }

  // Settles the dependencies as an ordinary user, and returns the state of "app" and those of its
  // targets, such as "2: 3 1".
  outcome settle(std::string_view typed) {
    return in_child_as_ordinary_user(typed, [&] {
      get_product_depend(app, table);
      return summary();
    });
  }
  std::string summary() const {
    std::string text = shown(app.install) + ":";
    for (const auto& target : app.target_dep) {
      if (target != nullptr) text += " " + std::to_string(static_cast<int>(target->install));
    }
    return text;
  }

  product_table table;
  product& app = add_product(table, "app", product_state::SELECTED);
  product& db = add_product(table, "db", product_state::SELECTED);
  target_dep& first = add_target(app, "first");
  target_dep& second = add_target(app, "second");
};

// Has the first target need "db", which qualifies.
category_dep& need_db(app_table& products) {
  products.db.category = "DB";
  products.db.type = "sql";
  category_dep& needed = add_category(products.first, "DB");
  needed.text = "a database";
  add_type(needed, "sql");
  return needed;
}

TEST(ProductDependencies, EveryTargetIsDecidedAndResolved) {
  app_table products;
  const outcome seen = products.settle("");
  EXPECT_EQ(seen.out, FIRST + SECOND);
  EXPECT_EQ(seen.result, "2: 3 3");
}

TEST(ProductDependencies, ATargetIsResolvedBeforeTheNextIsDecided) {
  app_table products;
  need_db(products);
  const outcome seen = products.settle("y\n");
  EXPECT_EQ(seen.result, "2: 3 3");
  EXPECT_TRUE(seen.out.starts_with(FIRST + "\n<260> "));
  EXPECT_TRUE(seen.out.ends_with("<277> <35>\n\n" + SECOND)) << seen.out;
}

TEST(ProductDependencies, WhatATargetThatIsNotWantedNeedsIsOfNoInterest) {
  app_table products;
  need_db(products);
  products.first.ask = "Really?";
  const outcome seen = products.settle("n\n");
  EXPECT_EQ(seen.out, "Really? <35>\n" + SECOND);
  EXPECT_EQ(seen.result, "2: 1 3");
}

TEST(ProductDependencies, AResolvedTargetIsNeitherAskedNorResolvedAgain) {
  app_table products;
  need_db(products);
  products.first.install = target_state::RESOLVED;
  products.first.ask = "Really?";
  EXPECT_EQ(products.settle("").out, SECOND);
}

TEST(ProductDependencies, AWantedTargetIsAskedAboutAgain) {
  app_table products;
  products.first.install = target_state::WANTED;
  products.first.ask = "Really?";
  EXPECT_EQ(products.settle("n\n").result, "2: 1 3");
}

TEST(ProductDependencies, AGapAmongTheTargetsIsNoEnd) {
  app_table products;
  products.app.target_dep[11] = std::move(products.app.target_dep[1]);
  EXPECT_EQ(products.settle("").out, FIRST + SECOND);
}

TEST(ProductDependencies, WithoutRightsTheProductIsGivenUp) {
  const scratch_directory directory;
  open_to_everybody(".");
  app_table products;
  products.first.fix_group = "no-such-group";
  products.app.needed_patches[0].level = 0;
  const outcome seen = products.settle("");
  EXPECT_EQ(seen.out, FIRST + "<97> <99> 'no-such-group' !\n<90> 'first' !\n\n<91> app !\n\n");
  EXPECT_EQ(seen.result, "1: 1 1");
}

TEST(ProductDependencies, WithoutRightsForTheOwnerTheProductIsGivenUp) {
  app_table products;
  products.second.fix_owner = "root";
  const outcome seen = products.settle("");
  EXPECT_EQ(seen.out, FIRST + SECOND + "<97> <98> 'root' !\n<90> 'second' !\n\n<91> app !\n\n");
  EXPECT_EQ(seen.result, "1: 3 1");
}

TEST(ProductDependencies, TheSuperuserGivesFilesToEveryOwner) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_SUPERUSER;
  app_table products;
  products.second.fix_owner = "root";
  const outcome seen = in_child("", [&] {
    get_product_depend(products.app, products.table);
    return products.summary();
  });
  EXPECT_EQ(seen.result, "2: 3 3");
}

TEST(ProductDependencies, AGivenUpProductIsAskedNothingOfItsTargets) {
  app_table products;
  products.app.install = product_state::AVAILABLE;
  products.first.install = target_state::WANTED;
  const outcome seen = products.settle("");
  EXPECT_EQ(seen.out, "");
  EXPECT_EQ(seen.result, "1: 3 1");
}

TEST(ProductDependencies, AGivenUpPatchStillReadsTheProductsOfItsDirectory) {
  const scratch_directory directory;
  write_file("opt/install/app.descr", "Name = app\n");
  app_table products;
  products.app.install = product_state::AVAILABLE;
  products.app.path = directory.path() + "/opt";
  products.app.settled.path = path_state::CHOSEN;
  products.app.needed_patches[0].level = 0;
  const outcome seen = in_child("", [&] {
    get_product_depend(products.app, products.table);
    return states(products.table);
  });
  EXPECT_EQ(seen.result, "1 2 10");
  EXPECT_EQ(seen.out, "");
}

TEST(ProductDependencies, AReconfigurationAsksAgain) {
  app_table products;
  products.app.install = product_state::SELECTED_FOR_RECONFIGURATION;
  products.first.ask = "First?";
  products.first.re_ask = "First again?";
  const outcome seen = products.settle("y\n");
  EXPECT_EQ(seen.out, "First again? <35>\n");
  EXPECT_EQ(seen.result, "11: 3 1");
}

TEST(ProductDependencies, AReconfigurationWithoutRightsIsNotGivenUp) {
  app_table products;
  products.app.install = product_state::SELECTED_FOR_RECONFIGURATION;
  products.first.ask = "First?";
  products.first.fix_owner = "root";
  const outcome seen = products.settle("y\nn\n");
  EXPECT_EQ(seen.out, "First? <35>\n<97> <98> 'root' !\n<90> 'first' !\nFirst? <35>\n");
  EXPECT_EQ(seen.result, "11: 1 1");
}

TEST(ProductDependencies, APatchReadsTheProductsOfItsOwnDirectory) {
  const scratch_directory directory;
  write_file("opt/install/app.descr", "Name = app\nVersion = 1.0\n");
  app_table products;
  products.app.target_dep = {};
  products.app.path = directory.path() + "/opt";
  products.app.settled.path = path_state::CHOSEN;
  products.app.release = {1, 0, 0, 2};
  const auto settle = [&] {
    return in_child("", [&] {
      get_product_depend(products.app, products.table);
      const product* original = products.app.needed_patches[0].supplier;
      return states(products.table) + (original == &products.table[2] ? " found" : "");
    });
  };
  EXPECT_EQ(settle().result, "2 2");
  products.app.needed_patches[0].level = 0;
  const outcome seen = settle();
  EXPECT_EQ(seen.result, "2 2 10 found");
  EXPECT_EQ(seen.out, "");
}

TEST(ProductDependencies, AMissingOriginalIsReported) {
  const scratch_directory directory;
  app_table products;
  products.app.target_dep = {};
  products.app.path = directory.path();
  products.app.release.patch = 2;
  products.app.needed_patches[0].level = 0;
  products.db.category = "DB";
  EXPECT_TRUE(products.settle("y\n").out.starts_with("\n\n<290>\n"));
}

TEST(Undo, TakesBackWhatWasDone) {
  app_table products;
  category_dep& needed = need_db(products);
  add_type(needed, "other");
  add_product(products.table, "found", product_state::ACCEPTED);
  add_product(products.table, "read", product_state::INSTALLED);
  needed.product = &products.table[2];
  needed.type_num = 1;
  products.first.install = products.second.install = target_state::RESOLVED;
  products.app.target_dep[11] = std::move(products.app.target_dep[1]);
  products.app.needed_patches[0] = products.app.needed_patches[19] = {0, &products.db};
  products.table[49].install = product_state::INSTALLED;

  undo_get_product_depend(products.app, products.table, 2);
  EXPECT_EQ(states(products.table), "2 2");
  EXPECT_EQ(products.table[3].install, product_state::FREE);
  EXPECT_EQ(products.table[49].install, product_state::FREE);
  EXPECT_EQ(products.summary(), "2: 1 1");
  EXPECT_EQ(needed.product, nullptr);
  EXPECT_EQ(needed.type_num, 1U);
  for (const needed_patch& patch : products.app.needed_patches) EXPECT_EQ(patch.supplier, nullptr);
}

TEST(Undo, LeavesAFullTableAndScannedPathsAlone) {
  app_table products;
  while (get_next_free_product(products.table) < TABLE_SIZE) {
    add_product(products.table, "p", product_state::INSTALLED);
  }
  products.db.settled.path = path_state::SCANNED;
  undo_get_product_depend(products.app, products.table, TABLE_SIZE);
  EXPECT_EQ(products.table[49].install, product_state::INSTALLED);
  EXPECT_EQ(products.db.settled.path, path_state::SCANNED);
}

}  // namespace
}  // namespace morvane
