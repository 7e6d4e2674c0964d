#include "settings/selection.h"

#include <gtest/gtest.h>

#include "host/tools.h"
#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

const std::string RULER_LINE = std::string(60, '-') + "\n";
const std::string HEADING = "\n<17>\n\n";
const std::string COLUMNS =
    "no. : state  product                                        version  patch\n";
const std::string INSTRUCTIONS = "\n<24>\n\n<18>\n<29>\n";
const std::string SELECTION =
    "\n<21>\n\nno. :  product                                              version  patch\n";
const std::string CONFIRM = "<34> <35>\n";
const std::string CONFIRMED = "\n\n<154>\n\n\n" + RULER_LINE;

// Runs the dialogue in a directory where files can be written and all tools are there; returns the
// states that it leaves.
outcome choose(std::string_view typed, product_table& table, bool as_ordinary_user = false) {
  use_test_messages();
  const scratch_directory directory;
  open_to_everybody(".");
  return in_child(typed, [&] {
    for (const std::string_view tool : INST_TOOLS) {
      if (!check_tool_avail(tool)) write_program("bin/" + std::string(tool), "");
    }
    put_first_on_path(directory.path() + "/bin");
    if (as_ordinary_user) become_ordinary_user();
    choose_SW_to_install(table);
    return states(table);
  });
}

// Six products: available, available, installed, available, being read, configured.
class six_products {
 public:
  six_products() {
    for (const auto state :
         {product_state::AVAILABLE, product_state::AVAILABLE, product_state::INSTALLED,
          product_state::AVAILABLE, product_state::INITIALISED, product_state::CONFIGURED}) {
      add_product(table, "p", state).release = {1, 0, 0, 0};
    }
  }
  product_table table;
};

std::string out_of_range(const std::string& number) {
  return "morvane : warning : product number '" + number + "' out of range.\n";
}

std::string not_available(const std::string& number) {
  return "morvane : warning : no tar file available for product number '" + number + "'.\n";
}

TEST(SelectionLine, IsNumbersBetweenSeparators) {
  const std::string far_behind = "1 " + std::string(300, 'x') + "7";
  const struct {
    std::string line;
    std::vector<int> numbers;
  } cases[] = {
      {"", {}},
      {"3,5", {3, 5}},
      {"3 ; 5", {3, 5}},
      {"3/5", {3, 5}},
      {"3\t5", {3, 5}},
      {"3 5;6/7,8", {3, 5, 6, 7, 8}},
      {"3a5", {3}},
      {"3a,5", {3, 5}},
      {"3,a5", {3, 5}},
      {"3,", {3}},
      {"3, ;/", {3}},
      {"1,-2", {1, 2}},
      {"-2", {-2}},
      {"+2", {2}},
      {"all", {0}},
      {"all 4", {0, 4}},
      {",4", {0, 4}},
      {"3-5", {3}},
      {"3.5", {3}},
      {"0,51", {0, 51}},
      {"99999999999,1", {2147483647, 1}},
      {"-99999999999", {-2147483648}},
      {far_behind, {1, 7}},
  };
  for (const auto& [line, numbers] : cases) EXPECT_EQ(read_selection(line), numbers) << line;
}

TEST(SelectionLine, LeadingBlankReadsTheFirstNumberTwice) {
  EXPECT_EQ(read_selection(" 3"), (std::vector<int>{3, 3}));
  EXPECT_EQ(read_selection("\t3,5"), (std::vector<int>{3, 3, 5}));
}

TEST(DetailsRequest, IsTheNumberBehindTheFirstQuestionMark) {
  const struct {
    const char* line;
    std::optional<int> number;
  } cases[] = {
      {"", std::nullopt}, {"4", std::nullopt},
      {"?4", 4},          {"? 4", 4},
      {"4?", 0},          {"2 ?4", 4},
      {"?4 ?5", 4},       {"?-4", -4},
      {"?", 0},           {"??4", 0},
      {"?x4", 0},         {"?4,5", 4},
      {"? \t4", 4},       {"?99999999999", 2147483647},
  };
  for (const auto& [line, number] : cases) EXPECT_EQ(read_details_request(line), number) << line;
}

TEST(Selection, ShowsWhatIsOfferedAndWhatWasChosen) {
  product_table table;
  add_product(table, "alpha", product_state::AVAILABLE).release = {2, 1, 3, 4};
  product& beta = add_product(table, "beta", product_state::INSTALLED);
  beta.full_name = "Beta Product";
  beta.release = {10, 0, 0, 0};
  const outcome seen = choose("1,2\ny\n", table);
  EXPECT_EQ(seen.out,
            HEADING + COLUMNS +
                "  1 :   *    alpha                                            2.1.3    4\n"
                "  2 :   +    Beta Product                                    10.0      \n" +
                INSTRUCTIONS + SELECTION +
                "  1 :  alpha                                                  2.1.3    4\n"
                "  2 :  Beta Product                                          10.0      \n" +
                CONFIRM + CONFIRMED);
  EXPECT_EQ(seen.err, "");
  EXPECT_EQ(seen.result, "2 11");
}

TEST(Selection, ALongNameMovesTheVersionColumn) {
  const std::string mark = "  1 :   *    ";
  for (const std::size_t length : {47U, 48U, 79U}) {
    product_table table;
    product& record = add_product(table, "a", product_state::AVAILABLE);
    record.full_name = std::string(length, 'n');
    record.release = {123, 45678901, 2, 3};
    const outcome seen = choose("\nq\n", table);
    EXPECT_EQ(seen.out, HEADING + COLUMNS + mark + std::string(length, 'n') + "123.45678901.23\n" +
                            INSTRUCTIONS + "\n<22>" + CONFIRM + "<299>");
  }
}

TEST(Selection, SkipsSlotsWithoutIdentifierAndOtherStates) {
  product_table table;
  for (const auto state :
       {product_state::INITIALISED, product_state::CONFIGURED, product_state::ACCEPTED}) {
    add_product(table, "other", state);
  }
  add_product(table, "", product_state::AVAILABLE);
  const outcome seen = choose("y\n", table);
  EXPECT_EQ(seen.out, HEADING + COLUMNS + "<23>\n\n" + "\n<22>" + CONFIRM + CONFIRMED);
  EXPECT_EQ(seen.result, "0 3 9 1");
}

TEST(Selection, NothingOfferedIsConfirmedAllTheSame) {
  product_table table;
  const std::string pass = HEADING + COLUMNS + "<23>\n\n" + "\n<22>" + CONFIRM;
  EXPECT_EQ(choose("n\n\n", table).out, pass + RULER_LINE + pass + CONFIRMED);
}

TEST(Selection, EveryAnswerLeavesItsStatesAndWarnings) {
  const struct {
    const char* line;
    const char* left;
    std::string warnings;
  } cases[] = {
      {"1", "2 1 10 1 0 3", ""},
      {"3,4", "1 1 11 2 0 3", ""},
      {" 4", "1 1 10 2 0 3", not_available("4")},
      {"2 2", "1 2 10 1 0 3", not_available("2")},
      {"3/3", "1 1 11 1 0 3", not_available("3")},
      {"5,6", "1 1 10 1 0 3", not_available("5") + not_available("6")},
      {"0,51,7,1", "2 1 10 1 0 3", out_of_range("0") + out_of_range("51") + out_of_range("7")},
      {"50", "1 1 10 1 0 3", out_of_range("50")},
      {"-1", "1 1 10 1 0 3", out_of_range("-1")},
      {"1,-2", "2 2 10 1 0 3", ""},
      {"all", "1 1 10 1 0 3", out_of_range("0")},
      {"99999999999", "1 1 10 1 0 3", out_of_range("2147483647")},
      {"", "1 1 10 1 0 3", ""},
  };
  for (const auto& [line, left, warnings] : cases) {
    six_products six;
    const outcome seen = choose(std::string(line) + "\ny\n", six.table);
    EXPECT_EQ(seen.result, left) << line;
    EXPECT_EQ(seen.err, warnings) << line;
    const bool changed = left != std::string("1 1 10 1 0 3");
    EXPECT_NE(seen.out.find(changed ? SELECTION : "\n<22>"), std::string::npos) << line;
  }
}

TEST(Selection, KeepsTheFirst255BytesOfTheLine) {
  for (const int blanks : {253, 254}) {
    six_products six;
    const std::string line = "1" + std::string(static_cast<std::size_t>(blanks), ' ') + "2";
    EXPECT_EQ(choose(line + "\ny\n", six.table).result,
              blanks == 253 ? "2 2 10 1 0 3" : "2 1 10 1 0 3");
  }
}

TEST(Selection, TheLastOfFiftyProductsCanBeChosen) {
  product_table table;
  for (std::size_t i = 0; i < TABLE_SIZE; ++i) add_product(table, "p", product_state::CONFIGURED);
  table.back().install = product_state::AVAILABLE;
  EXPECT_TRUE(choose("50\ny\n", table).result.ends_with(" 3 2"));
  EXPECT_EQ(choose("51\ny\n", table).err, out_of_range("51"));
}

TEST(Selection, ANoThrowsTheSelectionAway) {
  six_products six;
  const outcome seen = choose("1,3\nn\n2\ny\n", six.table);
  EXPECT_EQ(seen.result, "1 2 10 1 0 3");
  EXPECT_EQ(choose("1,3\nn\n\ny\n", six.table).result, "1 1 10 1 0 3");
}

TEST(Selection, AProductWithoutIdentifierStaysSelectedAndIsNotShown) {
  product_table table;
  add_product(table, "p", product_state::AVAILABLE);
  add_product(table, "", product_state::INSTALLED);
  EXPECT_EQ(choose("2\nn\n\ny\n", table).result, "1 11");
  const outcome seen = choose("1,2\ny\n", table);
  EXPECT_EQ(seen.result, "2 11");
  EXPECT_TRUE(seen.out.ends_with(SELECTION + "  1 :  p" + std::string(52, ' ') + "  0.0      \n" +
                                 CONFIRM + CONFIRMED))
      << seen.out;
}

TEST(Selection, ShowsNoNegativeMinorVersionOrPatch) {
  product_table table;
  add_product(table, "p", product_state::AVAILABLE).release = {2, 1, -3, -4};
  const std::string version = std::string(46, ' ') + "  2.1      \n";
  EXPECT_EQ(choose("1\ny\n", table).out, HEADING + COLUMNS + "  1 :   *    p" + version +
                                             INSTRUCTIONS + SELECTION + "  1 :  p      " + version +
                                             CONFIRM + CONFIRMED);
}

TEST(Selection, TheQuitLetterAndTheEndOfInputEndTheProgram) {
  for (const char* typed : {"q\n", "", "1", "1\n", "1\ny"}) {
    six_products six;
    EXPECT_FALSE(choose(typed, six.table).returned);
    EXPECT_TRUE(choose(typed, six.table).out.ends_with("<299>"));
  }
}

TEST(Selection, MissingToolsAreAskedAboutBehindTheConfirmation) {
  product_table table;
  add_product(table, "p", product_state::AVAILABLE).needed_tools = "no-such-tool";
  const outcome seen = choose("1\ny\ny\n", table);
  EXPECT_EQ(seen.result, "1");
  EXPECT_TRUE(
      seen.out.ends_with(CONFIRM + "\n\n<154>\n\n" + "\n<147>\n<152> 'p'? <35>\n\n" + RULER_LINE));
}

TEST(Details, ShowTheWholeProduct) {
  product_table table;
  product& record = add_product(table, "p", product_state::AVAILABLE);
  record.release = {2, 1, 3, 4};
  record.abstract = "What it is.";
  record.hardware = "Any.\nReally any.";
  record.needed_tools = "awk sed";
  const std::string list =
      HEADING + COLUMNS + "  1 :   *    p" + std::string(46, ' ') + "  2.1.3    4\n" + INSTRUCTIONS;
  const outcome seen = choose("?1\n\nq\n", table);
  EXPECT_EQ(seen.out, list + RULER_LINE +
                          "P r o d u c t  1 :  p\n                    version 2.1.3, patch 4\n\n"
                          "<27>\nWhat it is.\n\n\n"
                          "<28>\nAny.\nReally any.\n\n\n"
                          "<46>\n<47> tar diff chmod chgrp chown mkdir cat find cut\n\n"
                          "<48> awk sed\n\n\n"
                          "<26>" +
                          RULER_LINE + list + "<299>");
  EXPECT_EQ(seen.err, "");
}

TEST(Details, NameWhatIsMissing) {
  const std::string head = RULER_LINE +
                           "P r o d u c t  1 :  p\n                    version 0.0\n\n"
                           "<27>\n<25>\n\n<28>\n<25>\n\n"
                           "<46>\n<47> tar diff chmod chgrp chown mkdir cat find cut\n\n";
  product_table table;
  product& record = add_product(table, "p", product_state::AVAILABLE);
  EXPECT_NE(choose("?1\n\nq\n", table).out.find(head + "\n<26>" + RULER_LINE), std::string::npos);
  add_target(record, "main");
  EXPECT_NE(choose("?1\n\nq\n", table).out.find(head + "<48> <25>\n\n<26>" + RULER_LINE),
            std::string::npos);
  record.needed_tools = "";
  EXPECT_NE(choose("?1\n\nq\n", table).out.find(head + "<48> \n\n\n<26>" + RULER_LINE),
            std::string::npos);
}

TEST(Details, AreShownForEverySlotThatIsNotFree) {
  six_products six;
  for (const char* line : {"?4", "? 4", "2 ?4", "?5", "?6 1"}) {
    const outcome seen = choose(std::string(line) + "\n\n\ny\n", six.table);
    EXPECT_NE(seen.out.find("P r o d u c t  "), std::string::npos) << line;
    EXPECT_EQ(seen.err, "");
    EXPECT_EQ(seen.result, "1 1 10 1 0 3");
  }
}

TEST(Details, OfNoProductAreWarnedOfAndReturnToTheList) {
  six_products six;
  const struct {
    const char* line;
    const char* number;
  } cases[] = {{"4?", "0"}, {"?7", "7"}, {"?51", "51"}, {"?-4", "-4"}, {"?", "0"}};
  for (const auto& [line, number] : cases) {
    const outcome seen = choose(std::string(line) + "\n\nq\n", six.table);
    EXPECT_EQ(seen.err, out_of_range(number));
    EXPECT_EQ(seen.out.find("P r o d u c t"), std::string::npos);
    EXPECT_NE(seen.out.find(INSTRUCTIONS + "<26>" + RULER_LINE + HEADING), std::string::npos);
  }
}

TEST(Details, ReadOneCharacterAndNoMore) {
  six_products six;
  EXPECT_EQ(choose("?1\nx1\ny\n", six.table).result, "2 1 10 1 0 3");
}

TEST(Details, TheEndOfInputQuits) {
  six_products six;
  const outcome seen = choose("?1\n", six.table);
  EXPECT_FALSE(seen.returned);
  EXPECT_TRUE(seen.out.ends_with("<26><299>"));
}

// Two products: the first fixes an owner and groups, `descr_avail` as given.
outcome choose_fixed(int descr_avail, bool as_ordinary_user, const char* typed = "1,2\ny\n") {
  product_table table;
  product& fixed = add_product(table, "fixed", product_state::AVAILABLE);
  fixed.descr_avail = descr_avail;
  fixed.fix_owner[1] = "no such user";
  fixed.fix_owner[9] = "no such user either";
  fixed.fix_group[9] = "no-such-group";
  add_product(table, "free", product_state::AVAILABLE);
  return choose(typed, table, as_ordinary_user);
}

TEST(FixedOwners, OneLineForEachNameThatIsRefused) {
  const outcome seen = choose_fixed(FIXED_LISTS, true);
  EXPECT_EQ(seen.result, "1 2");
  EXPECT_NE(seen.out.find(INSTRUCTIONS +
                          "<97> <98> 'no such user' !\n<94> 1 !\n"
                          "<97> <98> 'no such user either' !\n<94> 1 !\n"
                          "<97> <99> 'no-such-group' !\n<94> 1 !\n" +
                          SELECTION),
            std::string::npos);
}

TEST(FixedOwners, ARefusedProductAloneIsNoSelection) {
  const outcome seen = choose_fixed(FIXED_LISTS, true, "1\ny\n");
  EXPECT_EQ(seen.result, "1 1");
  EXPECT_NE(seen.out.find("<94> 1 !\n\n<22>"), std::string::npos);
}

TEST(FixedOwners, TheSuperuserIsRefusedUnknownGroupsOnly) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_SUPERUSER;
  const outcome seen = choose_fixed(FIXED_LISTS, false);
  EXPECT_EQ(seen.result, "1 2");
  EXPECT_NE(seen.out.find(INSTRUCTIONS + "<97> <99> 'no-such-group' !\n<94> 1 !\n" + SELECTION),
            std::string::npos);
}

TEST(FixedOwners, AreCheckedOnlyWhereTheDescriptionFixedThem) {
  EXPECT_EQ(choose_fixed(DESCRIBED, true).result, "2 2");
  EXPECT_EQ(choose_fixed(NO_DESCRIPTION, true).result, "2 2");
}

TEST(FixedOwners, OfInstalledProductsAreNotChecked) {
  product_table table;
  product& fixed = add_product(table, "fixed", product_state::INSTALLED);
  fixed.descr_avail = FIXED_LISTS;
  fixed.fix_owner[0] = "no such user";
  EXPECT_EQ(choose("1\ny\n", table, true).result, "11");
}

}  // namespace
}  // namespace morvane
