#include "depend/category_resolution.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"
#include "support/texts.h"

namespace morvane {
namespace {

const std::string ANNOUNCEMENT =
    "\n<260> 'app', <261> 'main', <262> <263> 'DB' <264>:\n       a database\n\n";
const std::string TYPES = "\n<266> 'DB' <267> 'app'.\nsql, flat : (sql) ";
const std::string WHERE = "\n<270> 'DB' <271>:\n";
const std::string ACCEPT_MISMATCH = "<276> <35>\n";
const std::string OVERFLOW_TEXT = "morvane: More than 50 product entries, array overflow";

// "app" in slot 0, whose target "main" needs a product of category DB. Unless told otherwise it
// must be of type sql, version 1.2.3 patch 4 or newer.
class dependency {
 public:
  explicit dependency(bool with_type = true) {
    needed.text = "a database";
    if (with_type) add_type(needed, "sql", {1, 2, 3, 4});
  }
  product& add_candidate(std::string_view id, product_state state,
                         const release& version = {1, 2, 3, 4}) {
    product& record = add_product(table, id, state);
    record.category = "DB";
    record.type = "sql";
    record.path = "/opt/" + std::string(id);
    record.release = version;
    return record;
  }
  // Resolves and returns the supplier's slot, state, type, version and path, and the states that
  // the table is left in, such as "1 10 sql 1.2.3, patch 4 /opt/db | 2 10".
  outcome resolve(std::string_view typed) {
    use_test_messages();
    set_message(RULER, std::string(149, '-'));
    return in_child(typed, [&] {
      resolve_category_dep(app, target, needed, table);
      const product& found = *needed.product;
      return std::to_string(&found - table.data()) + " " + shown(found.install) + " " +
             found.type.c_str() + " " + version_numbers(found.release) + " " + found.path.c_str() +
             " | " + states(table);
    });
  }

  product_table table;
  product& app = add_product(table, "app", product_state::SELECTED);
  target_dep& target = add_target(app, "main");
  category_dep& needed = add_category(target, "DB");
};

// A directory "db" for descriptions of installed products.
class installed_directory {
 public:
  installed_directory() { std::filesystem::create_directory("db"); }
  const installed_directory& describe(const std::string& id, const std::string& version,
                                      int patch = 0) const {
    write_file("db/install/" + id + ".descr",
               "Name = " + id + "\nCategory = DB\nType = sql\nVersion = " + version +
                   "\nPatch = " + std::to_string(patch));
    return *this;
  }
  std::string path() const { return directory_.path() + "/db"; }
  std::string line() const { return path() + "\n"; }

 private:
  scratch_directory directory_;
};

// The summary of a candidate and the question for it.
std::string offer(const std::string& name, const std::string& path, const std::string& type,
                  const std::string& version) {
  return "\n<260> 'app', <261> 'main', <268> 'DB' <264>:\n\n\t" + name + "\n" +
         (path.empty() ? "" : "\tdirectory : " + path + "\n") + "\ttype      : " + type +
         "\n\tversion   : " + version + "\n" + (path.empty() ? "<265>\n" : "") + ACCEPT;
}

// What is said of a product that does not do.
std::string mismatch(const std::string& path, const std::string& type, const std::string& version,
                     const std::string& reasons) {
  return "\n<272> 'DB' <264>\n\ta database\n\tdirectory : " + path + "\n\ttype      : " + type +
         "\n\tversion   : " + version + "\n<274>\n" + reasons + ACCEPT_MISMATCH;
}

TEST(TableSupplier, IsTakenOnYes) {
  dependency d;
  d.add_candidate("db", product_state::INSTALLED);
  const outcome seen = d.resolve("y\n");
  EXPECT_EQ(seen.out, ANNOUNCEMENT + offer("db", "/opt/db", "sql", "1.2.3, patch 4") + "\n");
  EXPECT_EQ(seen.result, "1 10 sql 1.2.3, patch 4 /opt/db | 2 10");
}

TEST(TableSupplier, ARefusedOneIsFollowedByTheNext) {
  dependency d;
  d.add_candidate("one", product_state::SELECTED);
  d.add_candidate("two", product_state::INSTALLED, {2, 0, 0, 0});
  const outcome seen = d.resolve("n\ny\n");
  EXPECT_EQ(seen.out, ANNOUNCEMENT + offer("one", "", "sql", "1.2.3, patch 4") +
                          offer("two", "/opt/two", "sql", "2.0") + "\n");
  EXPECT_EQ(seen.result, "2 10 sql 2.0 /opt/two | 2 2 10");
}

TEST(TableSupplier, MustMeetTheRequirementForCertain) {
  dependency d;
  d.add_candidate("available", product_state::AVAILABLE);
  d.add_candidate("other category", product_state::INSTALLED).category = "WEB";
  d.add_candidate("other type", product_state::INSTALLED).type = "flat";
  d.add_candidate("too old", product_state::INSTALLED, {1, 2, 3, 3});
  d.add_candidate("not fully known", product_state::INSTALLED, {1, 2, -1, 4});
  d.add_candidate("fits", product_state::SELECTED);
  EXPECT_EQ(d.resolve("y\n").out, ANNOUNCEMENT + offer("fits", "", "sql", "1.2.3, patch 4") + "\n");
}

TEST(TableSupplier, MayBeTheProductItself) {
  dependency d;
  d.app.category = "DB";
  d.app.type = "sql";
  d.app.release = {1, 2, 3, 4};
  EXPECT_TRUE(d.resolve("y\n").result.starts_with("0 2 "));
}

TEST(TableSupplier, OnlyInstalledOnesMustHaveTheFiles) {
  const scratch_directory directory;
  for (const auto state :
       {product_state::SELECTED, product_state::CONFIGURED, product_state::ACCEPTED,
        product_state::INSTALLED, product_state::SELECTED_FOR_RECONFIGURATION}) {
    dependency d;
    d.needed.type_dep[0]->file_dep[3] = "lib/x";
    d.add_candidate("db", state).path = directory.path() + "/db";
    const bool new_one = state < product_state::ACCEPTED;
    EXPECT_EQ(d.resolve("y\n").returned, new_one) << shown(state);
    write_file("db/lib/x", "");
    EXPECT_TRUE(d.resolve("y\n").returned) << shown(state);
    std::filesystem::remove_all("db");
  }
}

TEST(NamedDirectory, IsAskedForWithTheProposalOfTheType) {
  dependency d;
  d.needed.type_dep[0]->std_path = "/opt/sql";
  EXPECT_EQ(d.resolve("q\n").out, ANNOUNCEMENT + "\n<270> 'DB' <271>:\n(/opt/sql) \n<299>");
}

TEST(NamedDirectory, MustExistUnlessSuppliersMayBeElsewhere) {
  dependency d;
  EXPECT_EQ(d.resolve("/no/such\nq\n").out,
            ANNOUNCEMENT + WHERE + "<129> '/no/such'\n" + WHERE + "<299>");
  d.target.need_no_install = 1;
  const outcome seen = d.resolve("/no/such\ny\n");
  EXPECT_EQ(seen.out, ANNOUNCEMENT + WHERE + "<129> '/no/such'\n" +
                          offer("a database", "/no/such", "<257>", "unknown") + "\n");
  EXPECT_EQ(seen.result, "1 10 <257> 0.0 /no/such | 2 10");
  d.target.need_no_install = -1;
  EXPECT_EQ(d.resolve("/no/such\ny\n").out, seen.out);
}

TEST(NamedDirectory, ItsProductsAreOfferedAndStay) {
  const installed_directory db;
  db.describe("a", "1.2.3", 4).describe("old", "1.0");
  dependency d;
  const outcome seen = d.resolve(db.path() + "//\ny\n");
  EXPECT_EQ(seen.out, ANNOUNCEMENT + WHERE + offer("a", db.path(), "sql", "1.2.3, patch 4") + "\n");
  EXPECT_EQ(seen.result, "1 10 sql 1.2.3, patch 4 " + db.path() + " | 2 10 10");
}

TEST(NamedDirectory, ARefusalRepeatsTheWholeAttempt) {
  const installed_directory db;
  db.describe("a", "2.0");
  dependency d;
  add_type(d.needed, "flat");
  const std::string refused = ANNOUNCEMENT + TYPES + WHERE + offer("a", db.path(), "sql", "2.0");
  const outcome seen = d.resolve("\n" + db.line() + "n\n\n" + db.line() + "y\n");
  EXPECT_EQ(seen.out, refused + "\n" + refused + "\n");
  EXPECT_EQ(seen.result, "1 10 sql 2.0 " + db.path() + " | 2 10");
}

TEST(NamedDirectory, ALaterCandidateIsTakenAfterARefusal) {
  const installed_directory db;
  db.describe("a", "2.0").describe("b", "3.0");
  dependency d;
  const outcome seen = d.resolve(db.line() + "n\ny\n");
  EXPECT_EQ(seen.out, ANNOUNCEMENT + WHERE + offer("a", db.path(), "sql", "2.0") +
                          offer("b", db.path(), "sql", "3.0") + "\n");
  EXPECT_EQ(seen.result, "2 10 sql 3.0 " + db.path() + " | 2 10 10");
}

TEST(NamedDirectory, OnlyProductsOfThatVeryPathAreOffered) {
  const installed_directory db;
  db.describe("a", "2.0");
  dependency d;
  d.add_candidate("far", product_state::INSTALLED);
  std::swap(d.table[1], d.table[5]);
  const outcome seen = d.resolve("n\n" + db.line() + "y\n");
  EXPECT_EQ(seen.out, ANNOUNCEMENT + offer("far", "/opt/far", "sql", "1.2.3, patch 4") + WHERE +
                          offer("a", db.path(), "sql", "2.0") + "\n");
  EXPECT_EQ(d.resolve("n\n" + db.line() + "n\nq\n").out,
            seen.out + ANNOUNCEMENT + offer("far", "/opt/far", "sql", "1.2.3, patch 4") + "<299>");
}

TEST(NamedDirectory, AProductWhoseVersionIsNotFullyKnownIsNotOffered) {
  const installed_directory db;
  db.describe("a", "1.2.-1", 4);
  dependency d;
  const outcome seen = d.resolve(db.line() + "y\n");
  EXPECT_EQ(seen.out,
            ANNOUNCEMENT + WHERE + offer("a database", db.path(), "<256>", "1.2, patch 4") + "\n");
  EXPECT_EQ(seen.result, "1 10 <256> 1.2, patch 4 " + db.path() + " | 2 10");
}

TEST(NamedDirectory, ACandidateThatLiesElsewhereIsAskedAboutAllTheSame) {
  const installed_directory db;
  write_program("db/config/links.conf", "exit 0\n");
  dependency d;
  d.needed.category = "LINKS";
  d.needed.type_dep[0]->type = "linksa";
  product& far = d.add_candidate("", product_state::INSTALLED);
  far.name = "far";
  far.category = "LINKS";
  far.type = "linksa";
  far.path = "/no/such";
  std::swap(d.table[1], d.table[5]);
  // Where the configuration file of the one elsewhere lies is asked whenever its version counts.
  const std::string probe = "\n<104>\n<105>\n<106> (/no/such/config/links.conf): ";
  const std::string typed = db.path() + "/config/links.conf\n";
  const outcome seen = d.resolve(typed + "n\n" + db.line() + typed + "y\n");
  const auto asked_first = seen.out.find(probe);
  const auto asked_for_directory = seen.out.find("<270> 'LINKS' <271>");
  const auto asked_again = seen.out.find(probe, asked_for_directory);
  ASSERT_NE(asked_again, std::string::npos) << seen.out;
  EXPECT_LT(asked_first, asked_for_directory);
  EXPECT_EQ(seen.out.find("\tfar\n", asked_for_directory), std::string::npos);
  EXPECT_EQ(seen.result, "1 10 linksa 1.3 " + db.path() + " | 2 10");
}

TEST(NamedDirectory, ReadBeforeIsNotReadAgainAndARecordIsAdded) {
  const installed_directory db;
  db.describe("a", "2.0");
  dependency d;
  product& known = d.add_candidate("a", product_state::INSTALLED, {2, 0, 0, 0});
  known.path = db.path();
  known.settled.path = path_state::SCANNED;
  const outcome seen = d.resolve("n\n" + db.line() + "y\n");
  EXPECT_EQ(seen.out, ANNOUNCEMENT + offer("a", db.path(), "sql", "2.0") + WHERE +
                          offer("a database", db.path(), "sql", "2.0") + "\n");
  EXPECT_EQ(seen.result, "2 10 sql 2.0 " + db.path() + " | 2 10 10");
}

TEST(AddedRecord, WithUnknownVersionIsOfferedUnderAnotherType) {
  const installed_directory db;
  dependency d;
  const outcome seen = d.resolve(db.line() + "y\n");
  EXPECT_EQ(seen.out,
            ANNOUNCEMENT + WHERE + offer("a database", db.path(), "<256>", "unknown") + "\n");
  EXPECT_EQ(seen.result, "1 10 <256> -1.-1 " + db.path() + " | 2 10");
}

TEST(AddedRecord, ARefusedOneIsGivenBackAndTheAttemptRepeated) {
  const installed_directory db;
  dependency d;
  const std::string attempt =
      ANNOUNCEMENT + WHERE + offer("a database", db.path(), "<256>", "unknown") + "\n";
  const outcome seen = d.resolve(db.line() + "n\n" + db.line() + "y\n");
  EXPECT_EQ(seen.out, attempt + attempt);
  EXPECT_EQ(seen.result, "1 10 <256> -1.-1 " + db.path() + " | 2 10");
}

TEST(AddedRecord, ThatIsTooOldIsExplained) {
  const installed_directory db;
  db.describe("a", "1.2.3", 3).describe("b", "1.0");
  dependency d;
  const std::string explained =
      mismatch(db.path(), "sql", "1.2.3, patch 3", "\t<278> 1.2.3, patch 4\n");
  const outcome seen = d.resolve(db.line() + "n\n" + db.line() + "y\n");
  EXPECT_EQ(seen.out,
            ANNOUNCEMENT + WHERE + explained + "\n" + ANNOUNCEMENT + WHERE + explained + "\n");
  // The slots of what was read are given back, and one of them is used for the added record.
  EXPECT_EQ(seen.result, "1 9 sql 1.2.3, patch 3 " + db.path() + " | 2 9");
}

TEST(AddedRecord, TheRequiredVersionLeavesZeroesOut) {
  const installed_directory db;
  db.describe("a", "1.2");
  dependency d(false);
  add_type(d.needed, "sql", {3, 0, 0, 0});
  EXPECT_EQ(d.resolve(db.line() + "y\n").out,
            ANNOUNCEMENT + WHERE + mismatch(db.path(), "sql", "1.2", "\t<278> 3.0\n") + "\n");
}

TEST(AddedRecord, ThatMissesFilesIsExplained) {
  const installed_directory db;
  db.describe("a", "2.0");
  write_file("db/bin/y", "");
  dependency d;
  d.needed.type_dep[0]->file_dep = {"lib/x", "bin/y", "", std::nullopt, "lib/z"};
  const outcome seen = d.resolve(db.line() + "y\n");
  EXPECT_EQ(seen.out, ANNOUNCEMENT + WHERE +
                          mismatch(db.path(), "sql", "2.0", "\t<279>\n\t\t lib/x lib/z\n") + "\n");
  EXPECT_EQ(seen.result, "1 9 sql 2.0 " + db.path() + " | 2 9");
}

TEST(AddedRecord, OfUnknownVersionThatMissesFilesShowsTheOtherType) {
  const installed_directory db;
  dependency d;
  d.needed.type_dep[0]->file_dep[19] = "lib/x";
  EXPECT_EQ(d.resolve(db.line() + "\n").out,
            ANNOUNCEMENT + WHERE +
                mismatch(db.path(), "<256>", "unknown", "\t<279>\n\t\t lib/x\n") + "\n");
}

TEST(AddedRecord, ThatIsTooOldIsNotTestedForFiles) {
  const installed_directory db;
  db.describe("a", "1.0");
  dependency d;
  d.needed.type_dep[0]->file_dep[0] = "lib/x";
  EXPECT_EQ(
      d.resolve(db.line() + "y\n").out,
      ANNOUNCEMENT + WHERE + mismatch(db.path(), "sql", "1.0", "\t<278> 1.2.3, patch 4\n") + "\n");
}

TEST(AddedRecord, IsLookedUpTwice) {
  const installed_directory db;
  write_file("db/install/a.descr", "fault = 1\n");
  dependency d;
  const outcome seen = d.resolve(db.line() + "y\n");
  // Once for the table, once for the version and once for the comparison.
  const std::string report = seen.err.substr(0, seen.err.size() / 3);
  EXPECT_NE(report, "");
  EXPECT_EQ(seen.err, report + report + report);
}

TEST(FullTable, IsReportedAndTheQuestionComesAgain) {
  const installed_directory db;
  dependency d;
  while (get_next_free_product(d.table) < TABLE_SIZE) {
    add_product(d.table, "p", product_state::CONFIGURED);
  }
  const outcome seen = d.resolve(db.line());
  EXPECT_EQ(seen.err, OVERFLOW_TEXT);
  EXPECT_EQ(seen.out, ANNOUNCEMENT + WHERE + "\n" + ANNOUNCEMENT + WHERE + "<299>");
  db.describe("a", "2.0");
  EXPECT_EQ(d.resolve(db.line()).err, OVERFLOW_TEXT + ".\n" + OVERFLOW_TEXT);
}

TEST(FullTable, TheLastSlotIsUsed) {
  const installed_directory db;
  dependency d;
  while (get_next_free_product(d.table) < TABLE_SIZE - 1) {
    add_product(d.table, "p", product_state::CONFIGURED);
  }
  const outcome seen = d.resolve(db.line() + "y\n");
  EXPECT_TRUE(seen.result.starts_with("49 10 <256> -1.-1 ")) << seen.result;
  EXPECT_EQ(seen.err, "");
}

TEST(TypeChoice, IsOneOfTheAlternatives) {
  dependency d;
  add_type(d.needed, "flat", {0, 1, 0, 0});
  d.add_candidate("db", product_state::SELECTED).type = "flat";
  const outcome seen = d.resolve("fla\nFLAT\nflat\ny\n");
  EXPECT_EQ(seen.out, ANNOUNCEMENT + TYPES + TYPES + TYPES +
                          offer("db", "", "flat", "1.2.3, patch 4") + "\n");
  EXPECT_EQ(d.resolve("\nq\n").out, ANNOUNCEMENT + TYPES + WHERE + "<299>");
}

TEST(TypeChoice, TheLastChoiceIsTheDefault) {
  const installed_directory db;
  dependency d;
  add_type(d.needed, "flat");
  d.needed.type_num = 1;
  const std::string flat_first = "\n<266> 'DB' <267> 'app'.\nsql, flat : (flat) ";
  EXPECT_EQ(d.resolve("\nq\n").out, ANNOUNCEMENT + flat_first + WHERE + "<299>");
  EXPECT_EQ(d.resolve("sql\n" + db.line() + "n\nq\n").out,
            ANNOUNCEMENT + flat_first + WHERE + offer("a database", db.path(), "<256>", "unknown") +
                "\n" + ANNOUNCEMENT + TYPES + "<299>");
}

TEST(TypeChoice, EndsAtTheFirstGapAndNeedsTwo) {
  dependency d;
  add_type(d.needed, "gap");
  add_type(d.needed, "behind");
  d.needed.type_dep[1] = nullptr;
  d.needed.type_num = 2;
  d.add_candidate("db", product_state::SELECTED);
  EXPECT_EQ(d.resolve("y\n").out, ANNOUNCEMENT + offer("db", "", "sql", "1.2.3, patch 4") + "\n");
}

TEST(NoAlternatives, EveryTypeAndVersionWillDo) {
  dependency d(false);
  d.add_candidate("db", product_state::INSTALLED, {-1, -1, -1, -1}).type = "any";
  EXPECT_EQ(d.resolve("y\n").out, ANNOUNCEMENT + offer("db", "/opt/db", "any", "unknown") + "\n");
}

TEST(NoAlternatives, AnAddedRecordHasAnEmptyType) {
  const installed_directory db;
  dependency d(false);
  const outcome seen = d.resolve(db.line() + "y\n");
  EXPECT_EQ(seen.out, ANNOUNCEMENT + WHERE + offer("a database", db.path(), "", "unknown") + "\n");
  EXPECT_EQ(seen.result, "1 10  -1.-1 " + db.path() + " | 2 10");
}

TEST(CategoryDialogue, TheEndOfInputQuits) {
  const installed_directory db;
  dependency d;
  add_type(d.needed, "flat");
  const std::string typed = "x\n\n" + db.line() + "n\n";
  for (std::size_t length = 0; length <= typed.size(); ++length) {
    const outcome seen = d.resolve(typed.substr(0, length));
    EXPECT_FALSE(seen.returned);
    EXPECT_TRUE(seen.out.ends_with("<299>")) << length;
  }
}

}  // namespace
}  // namespace morvane
