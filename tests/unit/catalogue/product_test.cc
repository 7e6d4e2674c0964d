#include "catalogue/product.h"

#include <gtest/gtest.h>

#include <memory>

namespace morvane {
namespace {

constexpr product_state STATES[] = {
    product_state::FREE,       product_state::INITIALISED,
    product_state::AVAILABLE,  product_state::SELECTED,
    product_state::CONFIGURED, product_state::ACCEPTED,
    product_state::INSTALLED,  product_state::SELECTED_FOR_RECONFIGURATION,
};

// Returns the codes of the states of which `holds` is true, each followed by a blank.
std::string states_in_which(bool (*holds)(const product&)) {
  std::string codes;
  for (const product_state state : STATES) {
    product record;
    record.install = state;
    if (holds(record)) codes += std::to_string(static_cast<int>(state)) + " ";
  }
  return codes;
}

// A record of which every member has another value than at the start.
product filled_product() {
  static product supplier;
  product record;
  record.install = product_state::INSTALLED;
  record.descr_avail = 5;
  record.id = record.name = record.full_name = "text";
  record.release = {4, 4, 4, 4};
  record.category = record.type = "text";
  record.abstract = record.hardware = "text";
  for (auto& target : record.target_dep) target = std::make_unique<target_dep>();
  record.needed_patches.fill({7, &supplier});
  record.settled.path = path_state::SCANNED;
  record.path = record.path_env_var = "text";
  record.path_info = "text";
  record.settled.owner = record.settled.group = record.settled.access = true;
  record.owner = record.homedir = record.group = "text";
  record.owner_info = record.group_info = record.other_access_info = "text";
  record.fix_owner.fill("text");
  record.fix_group.fill("text");
  record.other_access = 0;
  record.needed_tools = "text";
  return record;
}

TEST(ProductTable, StartsWithFreeSlots) {
  const auto table = std::make_unique<product_table>();
  EXPECT_EQ(table->size(), 50U);
  for (const product& record : *table) EXPECT_TRUE(is_free(record));
}

TEST(ProductTable, GivesItsLowestFreeSlot) {
  const auto table = std::make_unique<product_table>();
  EXPECT_EQ(get_next_free_product(*table), 0U);
  for (std::size_t slot = 0; slot < 50; ++slot) {
    EXPECT_EQ(get_next_free_product(*table), slot);
    init_product((*table)[slot]);
  }
  EXPECT_EQ(get_next_free_product(*table), 50U);
  (*table)[49].install = product_state::FREE;
  EXPECT_EQ(get_next_free_product(*table), 49U);
  (*table)[3].install = product_state::FREE;
  EXPECT_EQ(get_next_free_product(*table), 3U);
}

TEST(Product, IsPutIntoItsInitialState) {
  product record = filled_product();
  init_product(record);
  EXPECT_EQ(record.install, product_state::INITIALISED);
  EXPECT_EQ(record.descr_avail, 0);
  for (const std::string_view field :
       {record.id.view(), record.name.view(), record.full_name.view(), record.category.view(),
        record.type.view(), record.path.view(), record.path_env_var.view(), record.owner.view(),
        record.homedir.view(), record.group.view()}) {
    EXPECT_EQ(field, "");
  }
  EXPECT_EQ(record.release, (release{0, 0, 0, 0}));
  EXPECT_EQ(record.settled.path, path_state::UNSETTLED);
  for (const long_text* field :
       {&record.abstract, &record.hardware, &record.path_info, &record.owner_info,
        &record.group_info, &record.other_access_info, &record.needed_tools}) {
    EXPECT_FALSE(field->has_value());
  }
  for (const auto& target : record.target_dep) EXPECT_EQ(target, nullptr);
  for (const needed_patch& patch : record.needed_patches) {
    EXPECT_EQ(patch.level, -1);
    EXPECT_EQ(patch.supplier, nullptr);
  }
  for (const name_text& name : record.fix_owner) EXPECT_TRUE(name.empty());
  for (const name_text& name : record.fix_group) EXPECT_TRUE(name.empty());
  EXPECT_FALSE(record.settled.owner);
  EXPECT_FALSE(record.settled.group);
  EXPECT_FALSE(record.settled.access);
  EXPECT_EQ(record.other_access, 1);
}

TEST(Product, HasItsCapacities) {
  const product record;
  EXPECT_EQ(record.target_dep.size(), 12U);
  EXPECT_EQ(record.needed_patches.size(), 20U);
  EXPECT_EQ(record.fix_owner.size(), 10U);
  EXPECT_EQ(record.fix_group.size(), 10U);
  EXPECT_EQ(target_dep().category_dep.size(), 10U);
  EXPECT_EQ(category_dep().type_dep.size(), 10U);
  EXPECT_EQ(type_dep().file_dep.size(), 20U);
}

TEST(Product, StatesHaveTheirCodes) {
  EXPECT_EQ(states_in_which([](const product&) { return true; }), "-1 0 1 2 3 9 10 11 ");
  EXPECT_EQ(static_cast<int>(target_state::NOT_WANTED), 1);
  EXPECT_EQ(static_cast<int>(target_state::WANTED), 2);
  EXPECT_EQ(static_cast<int>(target_state::RESOLVED), 3);
  EXPECT_EQ(static_cast<int>(path_state::UNSETTLED), 0);
  EXPECT_EQ(static_cast<int>(path_state::CHOSEN), 1);
  EXPECT_EQ(static_cast<int>(path_state::SCANNED), 2);
}

TEST(Product, StatesMeanWhatTheirOrderSays) {
  EXPECT_EQ(states_in_which(is_free), "-1 ");
  EXPECT_EQ(states_in_which(on_host_after_run), "2 3 9 10 11 ");
  EXPECT_EQ(states_in_which(already_installed), "9 10 11 ");
  EXPECT_EQ(states_in_which(is_ordered), "3 11 ");
  EXPECT_EQ(states_in_which(is_selected), "2 11 ");
}

TEST(Product, ASelectionTakenBackLeavesWhatWasThereBefore) {
  product record;
  record.install = product_state::SELECTED;
  unselect(record);
  EXPECT_EQ(record.install, product_state::AVAILABLE);
  record.install = product_state::SELECTED_FOR_RECONFIGURATION;
  unselect(record);
  EXPECT_EQ(record.install, product_state::INSTALLED);
}

TEST(Product, IsShownByItsLongestName) {
  product record;
  record.id = "id";
  EXPECT_EQ(product_name(record), "id");
  record.name = "name";
  EXPECT_EQ(product_name(record), "name");
  record.full_name = "full name";
  EXPECT_EQ(product_name(record), "full name");
  record.name = "";
  EXPECT_EQ(product_name(record), "full name");
}

TEST(Product, ShowsItsVersion) {
  product record;
  EXPECT_EQ(product_version(record), "version 0.0");
  record.release = {2, 1, 3, 4};
  EXPECT_EQ(product_version(record), "version 2.1.3, patch 4");
}

TEST(Product, GivesItsResolvedTargets) {
  product record;
  EXPECT_EQ(resolved_target(record, 0), nullptr);
  record.target_dep[1] = std::make_unique<target_dep>();
  EXPECT_EQ(resolved_target(record, 1), nullptr);
  record.target_dep[1]->install = target_state::WANTED;
  EXPECT_EQ(resolved_target(record, 1), nullptr);
  record.target_dep[1]->install = target_state::RESOLVED;
  EXPECT_EQ(resolved_target(record, 1), record.target_dep[1].get());
}

TEST(Dependency, ItsAlternativesEndAtTheFirstGap) {
  category_dep category;
  EXPECT_TRUE(alternatives(category).empty());
  EXPECT_EQ(chosen_alternative(category), nullptr);
  for (auto& type : category.type_dep) type = std::make_unique<type_dep>();
  category.type_num = 9;
  EXPECT_EQ(alternatives(category).size(), 10U);
  EXPECT_EQ(chosen_alternative(category), category.type_dep[9].get());
  category.type_dep[2] = nullptr;
  category.type_num = 1;
  EXPECT_EQ(alternatives(category).size(), 2U);
  EXPECT_EQ(alternatives(category).data(), category.type_dep.data());
  EXPECT_EQ(chosen_alternative(category), category.type_dep[1].get());
  category.type_dep[0] = nullptr;
  EXPECT_EQ(chosen_alternative(category), nullptr);
}

TEST(Dependency, RequiresTheFilesBehindTheEndMarkAsWell) {
  type_dep type;
  EXPECT_TRUE(required_files(type).empty());
  type.file_dep = {"bin/x", "", std::nullopt, "lib/y"};
  type.file_dep[19] = "/etc";
  EXPECT_EQ(required_files(type), (std::vector<std::string_view>{"bin/x", "lib/y", "/etc"}));
}

TEST(Dependency, StartsUnsettled) {
  const target_dep target;
  EXPECT_EQ(target.install, target_state::NOT_WANTED);
  EXPECT_EQ(target.need_no_install, 0);
  EXPECT_FALSE(target.ask || target.re_ask || target.fix_owner || target.fix_group);
  const category_dep category;
  EXPECT_EQ(category.product, nullptr);
  EXPECT_EQ(category.type_num, std::nullopt);
  EXPECT_TRUE(category.text.empty());
  const type_dep type;
  EXPECT_EQ(type.release, (release{0, 0, 0, 0}));
  EXPECT_TRUE(type.std_path.empty());
  for (const long_text& file : type.file_dep) EXPECT_FALSE(file.has_value());
}

}  // namespace
}  // namespace morvane
