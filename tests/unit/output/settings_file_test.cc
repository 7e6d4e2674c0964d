#include "output/settings_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

const std::string SETTINGS_HEAD = "# <141>\n# <142>\n#\n# <143> @(#)morvane\t1.20\t95/06/08 \n\n";
const std::string HOST = "HOST_OS = SunOS5\n";
const std::string PRODUCT =
    "PRODUCT_NAME = app\nPRODUCT_PATH = /opt/app\nPRODUCT_OWNER = me\nPRODUCT_GROUP = us\n"
    "PRODUCT_ACCESS = 1\nPRODUCT_VERSION = 2.1, patch 3\n";
const std::string DB_LINES = "DB_NAME = db\nDB_PATH = /opt/db\nDB_TYPE = sql\nDB_VERSION = 1.0\n";

std::string missing_supplier(const std::string& category) {
  return "morvane : product pointer for dependency missing for category " + category +
         " while installing app";
}

// "app", whose resolved target needs "db".
class app_and_db {
 public:
  app_and_db() {
    app.descr_avail = DESCRIBED;
    app.path = "/opt/app";
    app.owner = "me";
    app.group = "us";
    app.release = {2, 1, 0, 3};
    db.path = "/opt/db";
    db.type = "sql";
    db.release = {1, 0, 0, 0};
  }
  // Writes the settings on a host "SunOS5".
  outcome write() {
    use_test_messages();
    return in_child("", [&] {
      pretend_host("SunOS 5.5.1");
      write_dat_file(app);
      return "";
    });
  }

  product_table table;
  product& app = add_product(table, "app", product_state::CONFIGURED);
  product& db = add_product(table, "db", product_state::INSTALLED);
};

TEST(SettingsFile, TellsWhatWasSettled) {
  const scratch_directory directory;
  app_and_db products;
  const outcome seen = products.write();
  EXPECT_EQ(read_file("app.dat"), SETTINGS_HEAD + HOST + PRODUCT);
  EXPECT_EQ(seen.written(), "");
  EXPECT_TRUE(seen.returned);
}

TEST(SettingsFile, IsNotWrittenWithoutADescription) {
  const scratch_directory directory;
  app_and_db products;
  products.app.descr_avail = NO_DESCRIPTION;
  products.write();
  EXPECT_FALSE(std::filesystem::exists("app.dat"));
  products.app.descr_avail = FIXED_LISTS;
  products.write();
  EXPECT_TRUE(std::filesystem::exists("app.dat"));
}

TEST(SettingsFile, PrefersTheFullName) {
  const scratch_directory directory;
  app_and_db products;
  const auto name_line = [&] {
    products.write();
    const std::string rest = read_file("app.dat").substr(SETTINGS_HEAD.size() + HOST.size());
    return rest.substr(0, rest.find('\n'));
  };
  products.app.full_name = "The App";
  EXPECT_EQ(name_line(), "PRODUCT_NAME = The App");
  products.app.full_name = "";
  EXPECT_EQ(name_line(), "PRODUCT_NAME = app");
  products.app.name = "";
  products.app.id = "app";
  EXPECT_EQ(name_line(), "PRODUCT_NAME = app");
}

TEST(SettingsFile, TellsAccessAndVersion) {
  const struct {
    release version;
    const char* line;
  } cases[] = {
      {{1, 4, 0, 2}, "1.4, patch 2"},   {{2, 1, 0, 3}, "2.1, patch 3"}, {{2, 0, 0, 0}, "2.0"},
      {{2, 1, 3, 4}, "2.1.3, patch 4"}, {{-1, -1, -1, -1}, "-1.-1"},
  };
  for (const auto& [version, line] : cases) {
    const scratch_directory directory;
    app_and_db products;
    products.app.other_access = 0;
    products.app.release = version;
    products.write();
    EXPECT_TRUE(read_file("app.dat").ends_with(
        std::string("PRODUCT_ACCESS = 0\nPRODUCT_VERSION = ") + line + "\n"));
  }
}

TEST(SettingsFile, TellsTheSuppliersOfResolvedTargetsInOrder) {
  const scratch_directory directory;
  app_and_db products;
  add_category(add_target(products.app, "not wanted"), "NO", &products.db);
  add_category(add_target(products.app, "wanted", target_state::WANTED), "NO", &products.db);
  target_dep& last = add_target(products.app, "last", target_state::RESOLVED);
  add_category(last, "LIB", &products.app);
  add_category(last, "DB", &products.db);
  target_dep& first = add_target(products.app, "first", target_state::RESOLVED);
  add_category(first, "DB", &products.db);
  // Gaps are no end.
  last.category_dep[9] = std::move(last.category_dep[1]);
  products.app.target_dep[11] = std::move(products.app.target_dep[2]);
  const outcome seen = products.write();
  EXPECT_EQ(read_file("app.dat"),
            SETTINGS_HEAD + HOST + PRODUCT + DB_LINES +
                "LIB_NAME = app\nLIB_PATH = /opt/app\nLIB_TYPE = \nLIB_VERSION = 2.1, patch 3\n" +
                DB_LINES);
  EXPECT_EQ(seen.err, "");
}

TEST(SettingsFile, ASupplierMustBeOnTheHost) {
  const struct {
    product_state state;
    bool written;
  } cases[] = {
      {product_state::FREE, false},      {product_state::INITIALISED, false},
      {product_state::AVAILABLE, false}, {product_state::SELECTED, false},
      {product_state::CONFIGURED, true}, {product_state::ACCEPTED, true},
      {product_state::INSTALLED, true},  {product_state::SELECTED_FOR_RECONFIGURATION, true},
  };
  for (const auto& [state, written] : cases) {
    const scratch_directory directory;
    app_and_db products;
    products.db.install = state;
    add_category(add_target(products.app, "main", target_state::RESOLVED), "DB", &products.db);
    const outcome seen = products.write();
    EXPECT_EQ(read_file("app.dat"), SETTINGS_HEAD + HOST + PRODUCT + (written ? DB_LINES : ""));
    EXPECT_EQ(seen.err, written ? "" : missing_supplier("DB")) << shown(state);
  }
}

TEST(SettingsFile, AMissingSupplierDoesNotEndTheWalk) {
  const scratch_directory directory;
  app_and_db products;
  target_dep& target = add_target(products.app, "main", target_state::RESOLVED);
  add_category(target, "ONE");
  add_category(target, "TWO");
  add_category(target, "DB", &products.db);
  EXPECT_EQ(products.write().err, missing_supplier("ONE") + missing_supplier("TWO"));
  EXPECT_EQ(read_file("app.dat"), SETTINGS_HEAD + HOST + PRODUCT + DB_LINES);
}

TEST(SettingsFile, AnUnknownHostIsWarnedOfAndEmpty) {
  const scratch_directory directory;
  use_test_messages();
  app_and_db products;
  const outcome seen = in_child("", [&] {
    pretend_host("");
    write_dat_file(products.app);
    return "";
  });
  EXPECT_EQ(seen.err, "morvane : warning : failed to get current operating system.\n");
  EXPECT_EQ(read_file("app.dat"), SETTINGS_HEAD + "HOST_OS = \n" + PRODUCT);
}

TEST(SettingsFile, ThatCannotBeOpenedEndsTheProgramBeforeTheHostIsAskedFor) {
  const scratch_directory directory;
  std::filesystem::create_directory("app.dat");
  use_test_messages();
  app_and_db products;
  const outcome seen = in_child("", [&] {
    pretend_host("");
    write_dat_file(products.app);
    return "";
  });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
  EXPECT_EQ(seen.out, "\n\n<95>app.dat<96>\n\n<299>");
  EXPECT_EQ(seen.err, "");
}

TEST(SettingsFile, AnExistingOneIsEmptiedAndKeepsItsMode) {
  const scratch_directory directory;
  write_file("app.dat", std::string(10000, 'x'));
  std::filesystem::permissions("app.dat", static_cast<std::filesystem::perms>(0640));
  app_and_db products;
  products.write();
  EXPECT_EQ(read_file("app.dat"), SETTINGS_HEAD + HOST + PRODUCT);
  EXPECT_EQ(std::filesystem::status("app.dat").permissions(),
            static_cast<std::filesystem::perms>(0640));
}

TEST(SettingsFile, ANewOneHasTheModeOfTheMask) {
  const scratch_directory directory;
  use_test_messages();
  app_and_db products;
  in_child("", [&] {
    umask(027);
    write_dat_file(products.app);
    return "";
  });
  EXPECT_EQ(std::filesystem::status("app.dat").permissions(),
            static_cast<std::filesystem::perms>(0640));
}

TEST(SettingsFile, ThatCannotBeWrittenInFullIsWarnedOf) {
  const scratch_directory directory;
  use_test_messages();
  app_and_db products;
  const outcome seen = in_child("", [&] {
    pretend_host("SunOS 5.5.1");
    limit_file_size(200);
    write_dat_file(products.app);
    return "";
  });
  EXPECT_TRUE(seen.returned);
  EXPECT_EQ(seen.err, "morvane : warning : 'app.dat' could not be written in full\n");
  EXPECT_EQ(seen.out, "");
  EXPECT_EQ(std::filesystem::file_size("app.dat"), 200U);
}

}  // namespace
}  // namespace morvane
