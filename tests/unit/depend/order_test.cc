#include "depend/order.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/child.h"
#include "support/records.h"

namespace morvane {
namespace {

const std::string RING =
    "morvane : error : product dependencies build a ring, installation may fail.\n";

// Products X, Y and Z, all of them configured.
class three_products {
 public:
  product_table table;
  product& x = add_product(table, "X", product_state::CONFIGURED);
  product& y = add_product(table, "Y", product_state::CONFIGURED);
  product& z = add_product(table, "Z", product_state::CONFIGURED);
};

target_dep& depend(product& record, product& supplier) {
  target_dep& target = add_target(record, "main");
  add_category(target, "C", &supplier);
  return target;
}

// Returns the identifiers in their order, such as "Z Y X".
outcome order_of(product_table& table) {
  return in_child("", [&] {
    installation_order order;
    order.fill(&table[49]);
    const std::size_t count = get_inst_order(table, order);
    std::string text;
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (i < count) text += (i == 0 ? "" : " ") + std::string(order[i]->id);
      if (i >= count && order[i] != nullptr) text += " and not null";
    }
    return text;
  });
}

TEST(Order, IsEmptyWithoutConfiguredProducts) {
  product_table table;
  for (const auto state :
       {product_state::INITIALISED, product_state::AVAILABLE, product_state::SELECTED,
        product_state::ACCEPTED, product_state::INSTALLED}) {
    add_product(table, "p", state);
  }
  EXPECT_EQ(order_of(table).result, "");
}

TEST(Order, IsThatOfTheTableWithoutDependencies) {
  three_products three;
  three.y.install = product_state::SELECTED_FOR_RECONFIGURATION;
  EXPECT_EQ(order_of(three.table).result, "X Y Z");
}

TEST(Order, PutsSuppliersFirst) {
  three_products three;
  depend(three.x, three.y);
  depend(three.y, three.z);
  EXPECT_EQ(order_of(three.table).result, "Z Y X");
}

TEST(Order, PutsASharedSupplierOnce) {
  three_products three;
  depend(three.x, three.y);
  depend(three.x, three.z);
  depend(three.y, three.z);
  const outcome seen = order_of(three.table);
  EXPECT_EQ(seen.result, "Z Y X");
  EXPECT_EQ(seen.err, "");
}

TEST(Order, FollowsTargetsAndCategoriesByTheirSlotsAndPatchesLast) {
  product_table table;
  product& x = add_product(table, "X", product_state::CONFIGURED);
  product* suppliers[5];
  const char* const ids[] = {"A", "B", "C", "D", "E"};
  for (std::size_t i = 0; i < 5; ++i) {
    suppliers[i] = &add_product(table, ids[i], product_state::CONFIGURED);
  }
  x.needed_patches[3] = {0, suppliers[1]};
  x.needed_patches[19] = {0, suppliers[0]};
  add_category(depend(x, *suppliers[4]), "C", suppliers[3]);
  depend(x, *suppliers[2]);
  // Gaps are no end.
  x.target_dep[11] = std::move(x.target_dep[0]);
  x.target_dep[11]->category_dep[9] = std::move(x.target_dep[11]->category_dep[0]);
  EXPECT_EQ(order_of(table).result, "C D E B A X");
}

TEST(Order, ARingIsReportedAndBroken) {
  three_products three;
  depend(three.x, three.y);
  depend(three.y, three.x);
  const outcome seen = order_of(three.table);
  EXPECT_EQ(seen.result, "Y X Z");
  EXPECT_EQ(seen.err, RING);
  EXPECT_EQ(seen.out, "");
}

// Returns the rings in the order in which they are met, such as "X Y, Z Z".
std::string rings_of(product_table& table) {
  std::string rings;
  installation_order order;
  get_inst_order(table, order, [&](std::span<product* const> ring) {
    if (!rings.empty()) rings += ", ";
    rings += ring[0]->id;
    for (const product* record : ring.subspan(1)) rings += " " + std::string(record->id);
  });
  return rings;
}

TEST(Order, ARingIsItsProductsFromTheOneThatIsNeededAgain) {
  three_products three;
  depend(three.x, three.y);
  EXPECT_EQ(rings_of(three.table), "");
  depend(three.y, three.z);
  depend(three.z, three.y);
  EXPECT_EQ(rings_of(three.table), "Y Z");
  depend(three.z, three.x);
  EXPECT_EQ(rings_of(three.table), "Y Z, X Y Z");
}

TEST(Order, AProductThatNeedsItselfStandsTwiceInItsRing) {
  three_products three;
  depend(three.x, three.y);
  depend(three.y, three.y);
  EXPECT_EQ(rings_of(three.table), "Y Y");
}

TEST(Order, EveryLinkThatClosesARingIsReported) {
  three_products three;
  depend(three.x, three.y);
  depend(three.y, three.z);
  depend(three.z, three.x);
  three.z.needed_patches[0] = {0, &three.y};
  const outcome seen = order_of(three.table);
  EXPECT_EQ(seen.result, "Z Y X");
  EXPECT_EQ(seen.err, RING + RING);
}

TEST(Order, IgnoresSuppliersThatTakeNoPart) {
  for (const auto state : {product_state::INSTALLED, product_state::ACCEPTED,
                           product_state::SELECTED, product_state::FREE}) {
    three_products three;
    depend(three.x, three.y);
    three.x.needed_patches[0] = {0, &three.y};
    depend(three.y, three.z);
    three.y.install = state;
    EXPECT_EQ(order_of(three.table).result, "X Z");
  }
}

TEST(Order, IgnoresSuppliersElsewhereButNotPatches) {
  three_products three;
  depend(three.x, three.y).need_no_install = 1;
  EXPECT_EQ(order_of(three.table).result, "X Y Z");
  depend(three.x, three.y).need_no_install = -1;
  EXPECT_EQ(order_of(three.table).result, "X Y Z");
  three.x.needed_patches[0] = {0, &three.y};
  EXPECT_EQ(order_of(three.table).result, "Y X Z");
}

TEST(Order, FollowsTargetsThatAreNotWantedAsWell) {
  three_products three;
  depend(three.x, three.y).install = target_state::NOT_WANTED;
  EXPECT_EQ(order_of(three.table).result, "Y X Z");
}

TEST(Order, AProductThatNeedsItselfStandsTwice) {
  three_products three;
  depend(three.y, three.y);
  const outcome seen = order_of(three.table);
  EXPECT_EQ(seen.result, "X Y Y Z");
  EXPECT_EQ(seen.err, RING);
}

TEST(Order, ALaterWantedSelfIsFoundOnItsPath) {
  three_products three;
  depend(three.x, three.x);
  depend(three.x, three.x);
  // The inner call meets the ring twice, the outer one finds the product placed.
  const outcome seen = order_of(three.table);
  EXPECT_EQ(seen.result, "X X Y Z");
  EXPECT_EQ(seen.err, RING + RING);
}

TEST(Order, HoldsFiftyProductsAndDropsTheSurplus) {
  for (const std::size_t selves : {0U, 1U, 50U}) {
    product_table table;
    for (std::size_t i = 0; i < table.size(); ++i) {
      product& record = add_product(table, "p" + std::to_string(i), product_state::CONFIGURED);
      if (i < selves) depend(record, record);
    }
    const std::string order = order_of(table).result;
    EXPECT_EQ(std::count(order.begin(), order.end(), ' '), 49);
    const char* const last = selves == 0 ? " p49" : selves == 1 ? " p48" : " p24 p24";
    EXPECT_TRUE(order.ends_with(last)) << order;
  }
}

// Returns a table whose first half fills the order, as its products need themselves.
void fill_with_selves(product_table& table) {
  for (std::size_t i = 0; i < TABLE_SIZE; ++i) {
    product& record = add_product(table, "p" + std::to_string(i), product_state::CONFIGURED);
    if (i < TABLE_SIZE / 2) depend(record, record);
  }
}

TEST(Order, WhatFindsNoPlaceIsFollowedAgainWhereverItIsNeeded) {
  product_table table;
  fill_with_selves(table);
  // The ring of the last two is reported from each of three starting products, and from each of
  // the two themselves.
  depend(table[48], table[49]);
  depend(table[49], table[48]);
  for (const std::size_t i : {45U, 46U, 47U}) depend(table[i], table[48]);
  const outcome seen = order_of(table);
  std::string rings;
  for (int i = 0; i < 25 + 3 + 2; ++i) rings += RING;
  EXPECT_EQ(seen.err, rings);
  EXPECT_TRUE(seen.result.ends_with(" p24 p24")) << seen.result;
}

TEST(Order, EndsWhereEverythingWithoutAPlaceNeedsEverythingElse) {
  product_table table;
  fill_with_selves(table);
  for (std::size_t i = 25; i < table.size(); ++i) {
    for (std::size_t target = 0; target < TARGETS; ++target) {
      target_dep& last = add_target(table[i], "t");
      for (std::size_t category = 0; category < CATEGORIES && i + 1 < table.size(); ++category) {
        add_category(last, "C", &table[i + 1]);
      }
    }
  }
  EXPECT_TRUE(order_of(table).result.ends_with(" p24 p24"));
}

TEST(Order, AChainOfFiftyProductsFits) {
  product_table table;
  for (std::size_t i = 0; i < TABLE_SIZE; ++i) {
    add_product(table, "p" + std::to_string(i), product_state::CONFIGURED);
  }
  for (std::size_t i = 0; i + 1 < table.size(); ++i) depend(table[i], table[i + 1]);
  depend(table[49], table[49]);
  const outcome seen = order_of(table);
  EXPECT_TRUE(seen.result.starts_with("p49 p49 p48 p47 ")) << seen.result;
  EXPECT_TRUE(seen.result.ends_with(" p2 p1"));
  EXPECT_EQ(seen.err, RING);
}

TEST(Order, AnEntryIsPlacedBehindItsSuppliers) {
  three_products three;
  depend(three.x, three.y);
  std::vector<product*> path;
  installation_order order = {&three.z};
  std::size_t count = 1;
  order_entry(three.x, path, order, count);
  EXPECT_EQ(order, (installation_order{&three.z, &three.y, &three.x}));
  EXPECT_EQ(count, 3U);
  EXPECT_TRUE(path.empty());
}

}  // namespace
}  // namespace morvane
