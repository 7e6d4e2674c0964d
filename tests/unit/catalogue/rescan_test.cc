#include "catalogue/rescan.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

constexpr const char* OVERFLOW_REPORT = "morvane: More than 50 product entries, array overflow.\n";

// A directory with installed products, and a product table.
class Rescan : public testing::Test {
 protected:
  Rescan() { use_test_messages(); }

  // Installs products "p1", "p2" and so on in "opt".
  void install(int count) {
    for (int i = 1; i <= count; ++i) {
      const std::string identifier = "p" + std::to_string(i);
      write_file("opt/install/" + identifier + ".descr", "Name = name_" + identifier + "\n");
    }
  }

  // Fills the first `count` slots with available products.
  void use_slots(std::size_t count) {
    for (std::size_t slot = 0; slot < count; ++slot) {
      init_product(table[slot]);
      table[slot].install = product_state::AVAILABLE;
    }
  }

  // Returns "FIRST COUNT" of a scan of `path`, and keeps what it reported.
  std::string scan(std::string_view path = "opt") {
    testing::internal::CaptureStderr();
    const scanned_slots slots = read_all_descr_files(table, path);
    errors = testing::internal::GetCapturedStderr();
    return std::to_string(slots.first) + " " + std::to_string(slots.count);
  }

  // Returns the number of the first free slot.
  std::size_t used() const { return get_next_free_product(table); }

  const scratch_directory here;
  const std::unique_ptr<product_table> table_owner = std::make_unique<product_table>();
  product_table& table = *table_owner;
  std::string errors;
};

TEST_F(Rescan, AddsTheDescribedProductsBehindTheUsedSlots) {
  install(3);
  write_file("opt/install/p4.tar", "");
  use_slots(2);
  EXPECT_EQ(scan(), "2 3");
  EXPECT_EQ(errors, "");
  EXPECT_EQ(used(), 5U);
  for (std::size_t i = 0; i < 3; ++i) {
    const product& record = table[2 + i];
    const std::string identifier = "p" + std::to_string(i + 1);
    EXPECT_EQ(record.id, identifier);
    EXPECT_EQ(record.name, "name_" + identifier);
    EXPECT_EQ(record.install, product_state::INSTALLED);
    EXPECT_EQ(record.descr_avail, 2);
    EXPECT_EQ(record.path, "opt");
    EXPECT_EQ(record.settled.path, path_state::SCANNED);
  }
}

TEST_F(Rescan, PutsTheDirectoryOverTheDescribedPath) {
  write_file("opt/install/p.descr", "Path = /described\n");
  EXPECT_EQ(scan(), "0 1");
  EXPECT_EQ(table[0].path, "opt");
}

TEST_F(Rescan, ReportsFaultsOfADescriptionWithItsFile) {
  write_file("opt/install/p.descr", "Foo = bar\n");
  EXPECT_EQ(scan(), "0 1");
  EXPECT_EQ(errors, "morvane : unkown keyword 'Foo' found in file 'opt/install/p.descr'\n");
}

TEST_F(Rescan, OfTheSamePathAddsNothing) {
  install(2);
  EXPECT_EQ(scan(), "0 2");
  EXPECT_EQ(scan(), "2 0");
  EXPECT_EQ(used(), 2U);
  EXPECT_EQ(scan("./opt"), "2 2");
}

TEST_F(Rescan, OfAPathChosenInThisRunAddsItsProductsOnce) {
  install(2);
  use_slots(1);
  table[0].path = "opt";
  table[0].settled.path = path_state::CHOSEN;
  EXPECT_EQ(scan(), "1 2");
  EXPECT_EQ(table[0].settled.path, path_state::SCANNED);
  EXPECT_EQ(scan(), "3 0");
}

TEST_F(Rescan, MarksEveryRecordWithThatPathButNoOther) {
  use_slots(5);
  for (const std::size_t slot : {0U, 1U, 2U}) table[slot].path = "opt";
  table[0].settled.path = path_state::CHOSEN;
  table[1].settled.path = path_state::SCANNED;
  table[2].settled.path = path_state::UNSETTLED;
  table[3].path = "optional";
  table[3].settled.path = path_state::CHOSEN;
  table[4].path = "opt";
  table[4].settled.path = path_state::CHOSEN;
  install(1);
  EXPECT_EQ(scan(), "5 0");
  EXPECT_EQ(table[0].settled.path, path_state::SCANNED);
  EXPECT_EQ(table[2].settled.path, path_state::UNSETTLED);
  EXPECT_EQ(table[3].settled.path, path_state::CHOSEN);
  EXPECT_EQ(table[4].settled.path, path_state::SCANNED);
}

TEST_F(Rescan, AProposedPathIsNoMark) {
  install(1);
  use_slots(1);
  table[0].path = "opt";
  EXPECT_EQ(scan(), "1 1");
  EXPECT_EQ(table[0].settled.path, path_state::UNSETTLED);
}

TEST_F(Rescan, LooksNoFurtherThanTheFirstFreeSlot) {
  install(1);
  use_slots(3);
  table[1].install = product_state::FREE;
  table[2].path = "opt";
  table[2].settled.path = path_state::SCANNED;
  EXPECT_EQ(scan(), "1 1");
  EXPECT_EQ(table[1].id, "p1");
}

TEST_F(Rescan, OfAMissingOrEmptyDirectoryAddsNothing) {
  use_slots(1);
  EXPECT_EQ(scan(), "1 0");
  std::filesystem::create_directories("opt/install");
  EXPECT_EQ(scan(), "1 0");
  EXPECT_EQ(errors, "");
  EXPECT_EQ(used(), 1U);
}

TEST_F(Rescan, FillsTheTableAndReportsTheSurplus) {
  const struct {
    std::size_t used;
    int described;
    std::string result;
    std::string errors;
  } rows[] = {
      {45, 5, "45 5", ""},
      {46, 5, "46 4", OVERFLOW_REPORT},
      {48, 5, "48 2", OVERFLOW_REPORT},
      {50, 5, "50 0", OVERFLOW_REPORT},
      {50, 0, "50 0", ""},
      {0, 50, "0 50", ""},
      {0, 51, "0 50", OVERFLOW_REPORT},
  };
  for (const auto& row : rows) {
    std::filesystem::remove_all("opt");
    table = product_table();
    use_slots(row.used);
    install(row.described);
    EXPECT_EQ(scan(), row.result);
    EXPECT_EQ(errors, row.errors);
  }
}

TEST_F(Rescan, KeepsWhatItAddedWhenTheTableIsFull) {
  install(5);
  use_slots(48);
  EXPECT_EQ(scan(), "48 2");
  EXPECT_EQ(table[48].id, "p1");
  EXPECT_EQ(table[49].id, "p2");
  EXPECT_EQ(scan(), "50 0");
  EXPECT_EQ(errors, "");  // the directory counts as scanned
}

TEST_F(Rescan, AnInstalledProductWithoutItsDescriptionIsStillOne) {
  read_installed_product("opt/install", "gone", table[0]);
  EXPECT_EQ(table[0].install, product_state::INSTALLED);
  EXPECT_EQ(table[0].descr_avail, NO_DESCRIPTION);
  EXPECT_EQ(table[0].id, "gone");
  EXPECT_EQ(table[0].settled.path, path_state::SCANNED);
}

}  // namespace
}  // namespace morvane
