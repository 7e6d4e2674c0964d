#include "depend/needs.h"

#include <gtest/gtest.h>

#include "support/records.h"

namespace morvane {
namespace {

TEST(Needs, AreNoneWithoutDependencies) {
  product record;
  add_target(record, "main");
  EXPECT_TRUE(needs_of(record).empty());
}

TEST(Needs, AreTheCategoriesOfEachTargetAndThenThePatches) {
  product record, db, web, original;
  target_dep& main = add_target(record, "main");
  target_dep& docs = add_target(record, "docs");
  category_dep& reader = add_category(docs, "READER");
  category_dep& store = add_category(main, "DB", &db);
  category_dep& server = add_category(main, "WEB", &web);
  main.need_no_install = 1;
  record.needed_patches[0].level = 0;
  record.needed_patches[1] = {2, &original};

  const std::vector<need> needs = needs_of(record);
  ASSERT_EQ(needs.size(), 5U);
  const need expected[] = {
      {.supplier = &db, .target = &main, .category = &store},
      {.supplier = &web, .target = &main, .category = &server},
      {.supplier = nullptr, .target = &docs, .category = &reader},
      {.supplier = nullptr, .patch = &record.needed_patches[0]},
      {.supplier = &original, .patch = &record.needed_patches[1]},
  };
  for (std::size_t i = 0; i < needs.size(); ++i) {
    EXPECT_EQ(needs[i].supplier, expected[i].supplier) << i;
    EXPECT_EQ(needs[i].target, expected[i].target) << i;
    EXPECT_EQ(needs[i].category, expected[i].category) << i;
    EXPECT_EQ(needs[i].patch, expected[i].patch) << i;
  }
}

TEST(Needs, NoGapIsTheirEnd) {
  product record, db, original;
  category_dep& last = add_category(add_target(record, "main"), "DB", &db);
  record.target_dep[11] = std::move(record.target_dep[0]);
  record.target_dep[11]->category_dep[9] = std::move(record.target_dep[11]->category_dep[0]);
  record.needed_patches[19] = {0, &original};
  const std::vector<need> needs = needs_of(record);
  ASSERT_EQ(needs.size(), 2U);
  EXPECT_EQ(needs[0].category, &last);
  EXPECT_EQ(needs[1].patch, &record.needed_patches[19]);
}

}  // namespace
}  // namespace morvane
