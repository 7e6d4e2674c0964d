#include "platform/effects.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "catalogue/rescan.h"
#include "host/rights.h"
#include "output/makefile.h"
#include "output/settings_file.h"
#include "settings/path.h"
#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;

// What a run makes lies in memory, over what there is on the host.
struct host_in_memory {
  std::set<std::string> directories{};
  std::map<std::string, std::string> files{};
  std::set<std::string> refused_groups{};

  bool has_made(std::string_view path) const {
    return directories.contains(std::string(path)) || files.contains(std::string(path));
  }

  effects made_effects() {
    const effects host = effects_on_host();
    effects made;
    made.exists = [this, host](std::string_view path) {
      return has_made(path) || host.exists(path);
    };
    made.is_file = [this, host](const std::string& name) {
      return files.contains(name) || host.is_file(name);
    };
    made.list_files = [this, host](std::string_view directory, std::string_view pattern) {
      return has_made(directory) ? file_names() : host.list_files(directory, pattern);
    };
    made.make_directory = [this](const std::string& path) {
      for (std::string each = path; !each.empty(); each.resize(each.rfind('/'))) {
        directories.insert(each);
      }
      return true;
    };
    made.may_create_in = [this](const std::string& directory) { return has_made(directory); };
    made.try_group = [this](const std::string&, std::string_view group) {
      const bool refused = refused_groups.contains(std::string(group));
      return refused ? group_trial::REFUSED : group_trial::ALLOWED;
    };
    made.remove_probe = [](const std::string&) {};
    made.write_file = [this](const std::string& name, earlier_file, const composition& compose) {
      files[name] = compose().value_or("");
      return write_outcome::WRITTEN;
    };
    return made;
  }
};

// Runs `code` in a child whose effects are those of `host`, in an empty directory, and checks that
// nothing there is touched.
outcome in_memory(std::string_view input, host_in_memory host,
                  const std::function<std::string(host_in_memory&)>& code) {
  const auto before = fs::last_write_time(".");
  const outcome seen = in_child(input, [&] {
    use_effects(host.made_effects());
    return code(host);
  });
  EXPECT_TRUE(fs::is_empty("."));
  EXPECT_EQ(fs::last_write_time("."), before);
  return seen;
}

TEST(Effects, InMemoryADirectoryIsCreatedAndIsThereForTheRestOfTheRun) {
  use_test_messages();
  const scratch_directory here;
  const std::string path = here.path() + "/opt/app";
  const outcome seen = in_memory(path + "\ny\n", {}, [&](host_in_memory&) {
    product_table table;
    product& app = add_product(table, "app", product_state::SELECTED);
    get_product_path(&app);
    return std::string(app.path) + (on_host().exists(here.path() + "/opt") ? " there" : " missing");
  });
  EXPECT_EQ(seen.result, path + " there");
  EXPECT_NE(seen.out.find("<129> '" + path + "'"), std::string::npos) << seen.out;
  EXPECT_EQ(seen.err, "");
}

TEST(Effects, InMemoryADirectoryThatWasCreatedIsListedWithoutAWord) {
  use_test_messages();
  const scratch_directory here;
  const outcome seen = in_memory("", {}, [&](host_in_memory&) {
    on_host().make_directory(here.path() + "/opt/install");
    product_table table;
    return std::to_string(read_all_descr_files(table, here.path() + "/opt").count);
  });
  EXPECT_EQ(seen.result, "0");
  EXPECT_EQ(seen.written(), "");
}

TEST(Effects, InMemoryAGroupIsTriedWithoutAProbe) {
  use_test_messages();
  const scratch_directory here;
  const outcome seen = in_memory("", {.refused_groups = {"bin"}}, [](host_in_memory&) {
    const bool first = check_chown_rights(std::nullopt, "bin");
    const bool second = check_chown_rights(std::nullopt, "no-such-group");
    return std::to_string(first) + std::to_string(second);
  });
  EXPECT_EQ(seen.result, "01");
  EXPECT_EQ(seen.written(), "<97> <99> 'bin' !\n");
}

// Writes the settings file and the makefile of a product, as the end of a run does.
void write_files_of_product() {
  product_table table;
  product& app = add_product(table, "app", product_state::CONFIGURED);
  app.descr_avail = DESCRIBED;
  app.path = "/opt/app";
  add_target(app, "main", target_state::RESOLVED);
  write_dat_file(app);
  write_makefile({&app});
}

TEST(Effects, InMemoryTheGeneratedFilesAreThoseThatARunWrites) {
  use_test_messages();
  const scratch_directory here;
  const outcome rehearsed = in_memory("", {}, [&](host_in_memory& host) {
    write_files_of_product();
    return host.files.at("app.dat") + host.files.at("install.mk") +
           (on_host().exists(MAKEFILE_NAME) ? "" : " missing");
  });
  const outcome done = in_child("", [&] {
    write_files_of_product();
    return read_file("app.dat") + read_file("install.mk");
  });
  EXPECT_EQ(rehearsed.result, done.result);
  // The makefile copies the settings file, which lies in memory only.
  EXPECT_NE(rehearsed.result.find("\napp-dat-file:"), std::string::npos);
  EXPECT_EQ(rehearsed.err.find("app.dat"), std::string::npos) << rehearsed.err;
  EXPECT_EQ(rehearsed.written(), done.written());
}

TEST(Effects, OnTheHostNothingIsComposedForAFileThatCannotBeOpened) {
  const scratch_directory here;
  fs::create_directory("file");
  bool composed = false;
  const write_outcome outcome = effects_on_host().write_file("file", earlier_file::GOES, [&] {
    composed = true;
    return "text";
  });
  EXPECT_EQ(outcome, write_outcome::NOT_OPENED);
  EXPECT_FALSE(composed);
  EXPECT_TRUE(fs::is_directory("file"));
}

TEST(Effects, OnTheHostAFileIsOpenWhileItIsComposed) {
  const scratch_directory here;
  const write_outcome outcome = effects_on_host().write_file(
      "file", earlier_file::STAYS, [] { return fs::exists("file") ? "text" : "not open"; });
  EXPECT_EQ(outcome, write_outcome::WRITTEN);
  EXPECT_EQ(read_file("file"), "text");
}

TEST(Effects, OnTheHostAFileWithoutContentLeavesAnEarlierOneOrNone) {
  const scratch_directory here;
  const auto write_nothing = [](earlier_file earlier) {
    return effects_on_host().write_file("file", earlier, [] { return std::nullopt; });
  };
  EXPECT_EQ(write_nothing(earlier_file::STAYS), write_outcome::NOT_WRITTEN);
  EXPECT_FALSE(fs::exists("file"));
  write_file("file", "earlier");
  EXPECT_EQ(write_nothing(earlier_file::STAYS), write_outcome::NOT_WRITTEN);
  EXPECT_EQ(read_file("file"), "earlier");
  EXPECT_EQ(write_nothing(earlier_file::GOES), write_outcome::NOT_WRITTEN);
  EXPECT_FALSE(fs::exists("file"));
}

}  // namespace
}  // namespace morvane
