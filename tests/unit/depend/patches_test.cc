#include "depend/patches.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"
#include "support/texts.h"

namespace morvane {
namespace {

const std::string LEAVE_OPEN = "<289> <35>\n";

// What the candidates differ in from the patch, by letter.
constexpr char ID = 'i', NAME = 'n', FULL_NAME = 'f', CATEGORY = 'c', TYPE = 't';

// Puts product "app" 2.1.0 at patch level `patch` into `table`, changed in all that `different`
// names.
product& add_app(product_table& table, int patch, product_state state,
                 std::string_view different = "") {
  const auto value = [&](char field) {
    return different.find(field) == std::string_view::npos ? "app" : "other";
  };
  product& record = add_product(table, value(ID), state);
  record.name = value(NAME);
  record.full_name = value(FULL_NAME);
  record.category = value(CATEGORY);
  record.type = value(TYPE);
  record.release = {2, 1, 0, patch};
  return record;
}

// A patch at level 3 in slot 0 that needs the original.
class patched_table {
 public:
  patched_table() {
    patch.path = "/opt/app";
    patch.needed_patches[0].level = 0;
  }
  product_table table;
  product& patch = add_app(table, 3, product_state::SELECTED);
};

// Settles the patches; returns the slots of the suppliers that were found, such as "0:1 2:5".
outcome settle(std::string_view typed, patched_table& products, bool ask) {
  use_test_messages();
  set_message(RULER, std::string(100, '-'));
  return in_child(typed, [&] {
    get_patch_depend(products.table, &products.patch, ask);
    std::string found;
    for (std::size_t i = 0; i < PATCHES; ++i) {
      const product* supplier = products.patch.needed_patches[i].supplier;
      if (supplier == nullptr) continue;
      found += (found.empty() ? "" : " ") + std::to_string(i) + ":" +
               std::to_string(supplier - products.table.data());
    }
    return found;
  });
}

// How a candidate is put to the operator.
std::string offer_of(const product& candidate) {
  const std::string level =
      candidate.release.patch > 0 ? "Patch " + std::to_string(candidate.release.patch) : "Original";
  const std::string version =
      candidate.release.patch > 0 ? ", patch " + std::to_string(candidate.release.patch) : "";
  return "\n<260> 'app version 2.1, patch 3' <269> 'app " + level + "'.\n'.\n<281> :\n\n\t" +
         std::string(candidate.full_name) + "\n\tdirectory : " + std::string(candidate.path) +
         "\n\tcategory  : " + std::string(candidate.category) +
         "\n\ttype      : " + std::string(candidate.type) + "\n\tversion   : 2.1" + version + "\n" +
         ACCEPT;
}

const std::string NOT_FOUND =
    "\n\n<290>\n        \n'app version 2.1, patch 3' <269> 'app original'.\n\n"
    "        <287> '/opt/app'.\n" +
    LEAVE_OPEN;

TEST(MatchLevel, IsTheBestThatTheDifferencesLeave) {
  const struct {
    std::string_view different;
    std::optional<match_level> level;
  } cases[] = {
      {"", match_level::NAMES_AND_KIND},
      {"i", match_level::NAMES_AND_KIND},
      {"f", match_level::NAME_AND_KIND},
      {"fi", match_level::NAME_AND_KIND},
      {"c", match_level::NAMES},
      {"t", match_level::NAMES},
      {"cti", match_level::NAMES},
      {"n", match_level::KIND},
      {"nfi", match_level::KIND},
      {"nfc", match_level::IDENTIFIER},
      {"nt", match_level::IDENTIFIER},
      {"fc", match_level::IDENTIFIER},
      {"fci", match_level::NAME},
      {"fti", match_level::NAME},
      {"nci", std::nullopt},
      {"nfcti", std::nullopt},
  };
  for (const auto& [different, level] : cases) {
    patched_table products;
    add_app(products.table, 0, product_state::INSTALLED, different);
    match_levels levels;
    gen_possible(&products.patch, products.table, 0, levels);
    EXPECT_EQ(levels[1], level) << different;
    EXPECT_EQ(levels[0], std::nullopt);
  }
}

TEST(MatchLevel, NeedsTheVersionAndTheWantedPatchLevel) {
  patched_table products;
  for (const release& version :
       {release{2, 1, 0, 1}, {3, 1, 0, 1}, {2, 0, 0, 1}, {2, 1, 1, 1}, {2, 1, 0, 2}}) {
    add_app(products.table, 0, product_state::INSTALLED).release = version;
  }
  match_levels levels;
  gen_possible(&products.patch, products.table, 1, levels);
  EXPECT_TRUE(levels[1].has_value());
  for (std::size_t slot = 2; slot < levels.size(); ++slot) EXPECT_FALSE(levels[slot].has_value());
}

TEST(MatchLevel, IsForProductsOnTheHostOnly) {
  const struct {
    product_state state;
    bool ranked;
  } cases[] = {
      {product_state::FREE, false},      {product_state::INITIALISED, false},
      {product_state::AVAILABLE, false}, {product_state::SELECTED, true},
      {product_state::CONFIGURED, true}, {product_state::ACCEPTED, true},
      {product_state::INSTALLED, true},  {product_state::SELECTED_FOR_RECONFIGURATION, true},
  };
  for (const auto& [state, ranked] : cases) {
    patched_table products;
    add_app(products.table, 0, state);
    match_levels levels;
    levels[1] = match_level::NAME;
    gen_possible(&products.patch, products.table, 0, levels);
    EXPECT_EQ(levels[1].has_value(), ranked) << shown(state);
  }
}

TEST(MatchLevel, OfTheProductItselfIsTheBest) {
  patched_table products;
  match_levels levels;
  gen_possible(&products.patch, products.table, 3, levels);
  EXPECT_EQ(levels[0], match_level::NAMES_AND_KIND);
}

TEST(MatchLevel, OfNoProductIsAnErrorAndChangesNothing) {
  product_table table;
  for (product* record : {&table[0], static_cast<product*>(nullptr)}) {
    const outcome seen = in_child("", [&] {
      match_levels levels;
      levels[7] = match_level::NAME;
      gen_possible(record, table, 0, levels);
      return levels[7] == match_level::NAME ? "unchanged" : "changed";
    });
    EXPECT_EQ(seen.err, "morvane : error : product pointer mismatch in 'gen_possible'\n");
    EXPECT_EQ(seen.result, "unchanged");
  }
}

TEST(PatchSupplier, TheTwoBestLevelsAreTakenSilently) {
  for (const char* different : {"", "i", "f"}) {
    patched_table products;
    add_app(products.table, 0, product_state::INSTALLED, different);
    for (const bool ask : {false, true}) {
      const outcome seen = settle("", products, ask);
      EXPECT_EQ(seen.result, "0:1");
      EXPECT_EQ(seen.written(), "");
    }
  }
}

TEST(PatchSupplier, LooserMatchesAreOfferedWhetherAskedForOrNot) {
  for (const char* different : {"c", "n", "nfc", "fci"}) {
    for (const bool ask : {false, true}) {
      patched_table products;
      product& candidate = add_app(products.table, 0, product_state::INSTALLED, different);
      candidate.path = "/opt/found";
      const outcome seen = settle("y\n", products, ask);
      EXPECT_EQ(seen.out, offer_of(candidate)) << different;
      EXPECT_EQ(seen.result, "0:1");
    }
  }
}

TEST(PatchSupplier, BetterLevelsAndLowerSlotsComeFirst) {
  patched_table products;
  const product& name = add_app(products.table, 0, product_state::INSTALLED, "fci");
  const product& names = add_app(products.table, 0, product_state::INSTALLED, "c");
  const product& kind = add_app(products.table, 0, product_state::INSTALLED, "n");
  const product& names_too = add_app(products.table, 0, product_state::INSTALLED, "t");
  const outcome seen = settle("n\nn\nn\ny\n", products, false);
  EXPECT_EQ(seen.out, offer_of(names) + offer_of(names_too) + offer_of(kind) + offer_of(name));
  EXPECT_EQ(seen.result, "0:1");
  add_app(products.table, 0, product_state::INSTALLED, "f");
  EXPECT_EQ(settle("", products, false).result, "0:5");
}

TEST(PatchSupplier, WithoutAskingStaysOpenSilently) {
  patched_table products;
  const outcome seen = settle("", products, false);
  EXPECT_EQ(seen.written(), "");
  EXPECT_EQ(seen.result, "");
}

TEST(PatchSupplier, IsReportedMissing) {
  patched_table products;
  const outcome seen = settle("y\n", products, true);
  EXPECT_EQ(seen.out, NOT_FOUND);
  EXPECT_EQ(seen.result, "");
}

TEST(PatchSupplier, TheMissingLevelIsNamed) {
  patched_table products;
  products.patch.needed_patches[0].level = 2;
  EXPECT_NE(settle("\n", products, true).out.find("<269> 'app patch 2'.\n\n"), std::string::npos);
}

TEST(PatchSupplier, ANoOffersTheCandidatesAgain) {
  patched_table products;
  const product& candidate = add_app(products.table, 0, product_state::INSTALLED, "c");
  const outcome seen = settle("n\nn\nn\nn\ny\n", products, true);
  EXPECT_EQ(seen.out, offer_of(candidate) + NOT_FOUND + offer_of(candidate) + NOT_FOUND +
                          offer_of(candidate));
  EXPECT_EQ(seen.result, "0:1");
}

TEST(PatchSupplier, EveryIndexIsWalkedAndSettledOnesAreKept) {
  patched_table products;
  product& other = add_app(products.table, 7, product_state::INSTALLED);
  add_app(products.table, 1, product_state::INSTALLED);
  add_app(products.table, 2, product_state::INSTALLED);
  products.patch.needed_patches = {{{0, &other}, {1}, {-1}, {2}}};
  products.patch.needed_patches[19].level = 3;
  EXPECT_EQ(settle("", products, true).result, "0:1 1:2 3:3 19:0");
}

TEST(PatchSupplier, IsOfNoInterestForProductsThatAreNotOnTheHost) {
  for (const auto state : {product_state::FREE, product_state::AVAILABLE}) {
    patched_table products;
    products.patch.install = state;
    EXPECT_EQ(settle("", products, true).written(), "");
  }
  patched_table installed;
  installed.patch.install = product_state::INSTALLED;
  EXPECT_EQ(settle("y\n", installed, true).out, NOT_FOUND);
}

TEST(PatchSupplier, OfNoProductIsAnError) {
  const outcome seen = in_child("", [] {
    product_table table;
    get_patch_depend(table, nullptr, true);
    return "";
  });
  EXPECT_EQ(seen.err, "morvane : error : product pointer mismatch in 'get_patch_depend'\n");
}

TEST(PatchSupplier, TheEndOfInputQuits) {
  patched_table products;
  EXPECT_FALSE(settle("", products, true).returned);
  EXPECT_FALSE(settle("n\n", products, true).returned);
  add_app(products.table, 0, product_state::INSTALLED, "c");
  EXPECT_FALSE(settle("", products, false).returned);
}

TEST(PathExport, GivesThePathToSuppliersOfThisRunThatHaveNone) {
  const struct {
    product_state state;
    path_state path_valid;
    bool exported;
  } cases[] = {
      {product_state::SELECTED, path_state::UNSETTLED, true},
      {product_state::CONFIGURED, path_state::UNSETTLED, true},
      {product_state::CONFIGURED, path_state::CHOSEN, false},
      {product_state::AVAILABLE, path_state::UNSETTLED, false},
      {product_state::ACCEPTED, path_state::UNSETTLED, false},
      {product_state::INSTALLED, path_state::UNSETTLED, false},
  };
  for (const auto& [state, path_valid, exported] : cases) {
    patched_table products;
    product& supplier = add_app(products.table, 0, state);
    supplier.settled.path = path_valid;
    products.patch.settled.path = path_state::SCANNED;
    products.patch.needed_patches[0].supplier = &supplier;
    export_path_to_patch_depend(products.patch);
    EXPECT_EQ(supplier.path, exported ? "/opt/app" : "") << shown(state);
    EXPECT_EQ(supplier.settled.path, exported ? path_state::SCANNED : path_valid);
  }
}

TEST(PathExport, WalksAllIndicesWithANeededPatch) {
  patched_table products;
  product& last = add_app(products.table, 0, product_state::SELECTED);
  product& not_needed = add_app(products.table, 0, product_state::SELECTED);
  products.patch.settled.path = path_state::CHOSEN;
  products.patch.needed_patches[19] = {0, &last};
  products.patch.needed_patches[5] = {-1, &not_needed};
  export_path_to_patch_depend(products.patch);
  EXPECT_EQ(last.path, "/opt/app");
  EXPECT_EQ(not_needed.path, "");
}

TEST(PathExport, NeedsASettledProduct) {
  patched_table products;
  product& supplier = add_app(products.table, 0, product_state::SELECTED);
  products.patch.needed_patches[0].supplier = &supplier;
  export_path_to_patch_depend(products.patch);
  products.patch.settled.path = path_state::CHOSEN;
  products.patch.install = product_state::AVAILABLE;
  export_path_to_patch_depend(products.patch);
  EXPECT_EQ(supplier.path, "");
}

}  // namespace
}  // namespace morvane
