#include "console/product_dump.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>

#include "support/child.h"
#include "text/format.h"

namespace morvane {
namespace {

std::string dump(const product& record) {
  const outcome seen = in_child("", [&] {
    print_product(record);
    return "";
  });
  EXPECT_EQ(seen.err, "");
  return seen.out;
}

std::string address(const void* record) {
  std::ostringstream digits;
  digits << std::hex << static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(record));
  return digits.str();
}

constexpr const char* RULE = "----------------------------------------------------------------\n";

constexpr const char* UNFILLED_HEAD =
    "install       : 0\n"
    "id            : \n"
    "descr_avail   : 0\n"
    "name          : \n"
    "full_name     : \n"
    "version       : 0\n"
    "subversion    : 0\n"
    "minorversion  : 0\n"
    "patch         : 0\n"
    "category      : \n"
    "type          : \n"
    "abstract      : \n"
    "hardware      : \n";

constexpr const char* NO_PATCHES = "\nneeded_patches (needed_patch_product):\n";

constexpr const char* UNFILLED_SETTINGS =
    "\n"
    "path_valid       : 0\n"
    "path             : \n"
    "path_info        : \n"
    "path_env_var     : \n"
    "owner_valid      : 0\n"
    "owner            : \n"
    "owner_info       : \n"
    "fix_owner        :         \x20\n"
    "homedir          : \n"
    "group_valid      : 0\n"
    "group            : \n"
    "group_info       : \n"
    "fix_group        :         \x20\n"
    "other_access_valid: 0\n"
    "other_access     : 1\n"
    "other_access_info: \n"
    "needed_tools     : \n";

product initialised() {
  product record;
  init_product(record);
  return record;
}

TEST(ProductDump, ShowsAbsentTextsAsEmpty) {
  EXPECT_EQ(dump(initialised()),
            std::string(RULE) + UNFILLED_HEAD + NO_PATCHES + UNFILLED_SETTINGS + RULE);
}

TEST(ProductDump, ShowsEveryFieldOfTheProduct) {
  product record;
  record.install = product_state::SELECTED_FOR_RECONFIGURATION;
  record.id = "tool-1";
  record.descr_avail = 2;
  record.name = "tool";
  record.full_name = "The Tool";
  record.release = {1, 2, 3, -4};
  record.category = "TOOLS";
  record.type = "fine";
  record.abstract = "first\nsecond";
  record.hardware = "100%s";
  record.settled.path = path_state::CHOSEN;
  record.path = "/opt/tool";
  record.path_info = "path info";
  record.path_env_var = "TOOL";
  record.settled.owner = true;
  record.owner = "root";
  record.owner_info = "owner info";
  record.fix_owner[0] = "one";
  record.fix_owner[9] = "ten";
  record.homedir = "/root";
  record.settled.group = true;
  record.group = "bin";
  record.group_info = "group info";
  record.fix_group[1] = "two";
  record.settled.access = true;
  record.other_access = 0;
  record.other_access_info = "access info";
  record.needed_tools = "sed awk";
  EXPECT_EQ(dump(record), std::string(RULE) +
                              "install       : 11\n"
                              "id            : tool-1\n"
                              "descr_avail   : 2\n"
                              "name          : tool\n"
                              "full_name     : The Tool\n"
                              "version       : 1\n"
                              "subversion    : 2\n"
                              "minorversion  : 3\n"
                              "patch         : -4\n"
                              "category      : TOOLS\n"
                              "type          : fine\n"
                              "abstract      : first\nsecond\n"
                              "hardware      : 100%s\n" +
                              NO_PATCHES +
                              "\n"
                              "path_valid       : 1\n"
                              "path             : /opt/tool\n"
                              "path_info        : path info\n"
                              "path_env_var     : TOOL\n"
                              "owner_valid      : 1\n"
                              "owner            : root\n"
                              "owner_info       : owner info\n"
                              "fix_owner        : one         ten\n"
                              "homedir          : /root\n"
                              "group_valid      : 1\n"
                              "group            : bin\n"
                              "group_info       : group info\n"
                              "fix_group        :  two        \n"
                              "other_access_valid: 1\n"
                              "other_access     : 0\n"
                              "other_access_info: access info\n"
                              "needed_tools     : sed awk\n" +
                              RULE);
}

TEST(ProductDump, ShowsTargetsWithTheirDependencies) {
  product record = initialised();
  product supplier = initialised();
  supplier.id = "base-2";
  supplier.name = "base";
  supplier.install = product_state::INSTALLED;

  target_dep& target = *(record.target_dep[11] = std::make_unique<target_dep>());
  target.target = "daemon";
  target.install = target_state::RESOLVED;
  target.need_no_install = 1;
  target.ask = "Ask?";
  target.re_ask = "Again?";
  target.fix_owner = "root";
  target.fix_group = "bin";
  category_dep& settled = *(target.category_dep[0] = std::make_unique<category_dep>());
  settled.category = "BASE";
  settled.text = "the base";
  settled.type_num = 2;
  settled.product = &supplier;
  type_dep& type = *(settled.type_dep[2] = std::make_unique<type_dep>());
  type.type = "fine";
  type.release = {1, 2, 3, 4};
  type.std_path = "/opt/base";
  type.file_dep[0] = "bin/base";
  type.file_dep[2] = "lib/base";
  category_dep& open = *(target.category_dep[9] = std::make_unique<category_dep>());
  open.category = "MORE";

  const std::string targets = fill(
      "target_dep [11]   : %s\n"
      "\ttarget         : daemon\n"
      "\tinstall        : 3\n"
      "\tneed_no_install: 1\n"
      "\task            : Ask?\n"
      "\tre_ask         : Again?\n"
      "\tfix_owner      : root\n"
      "\tfix_group      : bin\n"
      "\tcategory_dep [11][0] : %s\n"
      "\t\tproduct->name    : base\n"
      "\t\t       ->install : 10\n"
      "\t\t       ->id      : base-2\n"
      "\t\tcategory : BASE\n"
      "\t\ttext     : the base\n"
      "\t\ttype_num : 2\n"
      "\t\ttype_dep [11][0][2] : %s\n"
      "\t\t\ttype        : fine\n"
      "\t\t\tversion     : 1\n"
      "\t\t\tsubversion  : 2\n"
      "\t\t\tminorversion: 3\n"
      "\t\t\tpatch       : 4\n"
      "\t\t\tstd_path    : /opt/base\n"
      "\t\t\tfile_dep    : bin/base lib/base\n"
      "\tcategory_dep [11][9] : %s\n"
      "\t\tproduct  : 0\n"
      "\t\tcategory : MORE\n"
      "\t\ttext     : \n"
      "\t\ttype_num : -1\n",
      {address(&target), address(&settled), address(&type), address(&open)});
  EXPECT_EQ(dump(record),
            std::string(RULE) + UNFILLED_HEAD + targets + NO_PATCHES + UNFILLED_SETTINGS + RULE);
}

TEST(ProductDump, ShowsNeededPatchesUpToTheEndMark) {
  product record = initialised();
  product supplier = initialised();
  supplier.id = "patch-7";
  supplier.name = "patch";
  record.needed_patches[0] = {7, &supplier};
  record.needed_patches[1].level = 0;
  record.needed_patches[3].level = 9;  // behind the end mark
  EXPECT_EQ(dump(record), std::string(RULE) + UNFILLED_HEAD + NO_PATCHES +
                              "needed_patches[0] : 7\n"
                              "\tproduct->name    : patch\n"
                              "\t       ->install : 0\n"
                              "\t       ->id      : patch-7\n"
                              "needed_patches[1] : 0\n" +
                              UNFILLED_SETTINGS + RULE);
}

TEST(ProductDump, ShowsAFullPatchListToItsEnd) {
  product record = initialised();
  record.needed_patches.fill({5});
  EXPECT_NE(dump(record).find("needed_patches[19] : 5\n\npath_valid "), std::string::npos);
}

}  // namespace
}  // namespace morvane
