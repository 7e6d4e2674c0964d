#include <gtest/gtest.h>

#include <map>

#include "needs/prospects.h"
#include "needs/supply.h"
#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

// A distribution whose products are read from texts, by their identifiers.
class Needs : public testing::Test {
 protected:
  Needs() { use_test_messages(); }

  const distribution_needs& of(const std::map<std::string, std::string>& descriptions) {
    for (const auto& [identifier, text] : descriptions) {
      write_file(identifier + ".descr", text);
      write_file(identifier + ".tar", "");
    }
    loaded_ = load_distribution(".");
    needs_ = needs_in(*loaded_);
    return needs_;
  }

  // Returns how each product of the category compares with the only need of the first product.
  std::map<std::string, fit> fits() const {
    std::map<std::string, fit> found;
    for (const candidate& each : needs_.at(0).needs.at(0).candidates) {
      found[needs_[each.product].product->identifier] = each.fit;
    }
    return found;
  }

  std::vector<std::string> rings() const {
    std::vector<std::string> found;
    for (const ring& each : rings_in(needs_)) {
      std::string path = each.avoidable ? "avoidable" : "ring";
      for (const ring_step& step : each.steps) {
        path += " " + needs_[step.product].product->identifier;
      }
      found.push_back(path);
    }
    return found;
  }

 private:
  scratch_directory here_;
  std::optional<distribution> loaded_;
  distribution_needs needs_;
};

const std::string NEEDS_B = "Target = t\nNeedsCategory = B\n";

std::string of_category(const std::string& category, const std::string& more = "") {
  return "Category = " + category + "\n" + more;
}

std::string needing(const std::string& category, const std::string& more = "") {
  return "Target = t\n" + more + "NeedsCategory = " + category + "\n";
}

TEST_F(Needs, CompareEachProductOfTheCategoryWithTheTypeThatIsItsOwn) {
  const auto& needs = of({{"a", NEEDS_B + "NeedsType = x\nNeedsVersion = 2\nNeedsType = y\n"},
                          {"fits-x", of_category("B", "Type = x\nVersion = 2\n")},
                          {"fits-y", of_category("B", "Type = y\nVersion = 0\n")},
                          {"old", of_category("B", "Type = x\nVersion = 1.9\n")},
                          {"other", of_category("B", "Type = z\nVersion = 9\n")},
                          {"unlike", of_category("C", "Type = x\nVersion = 2\n")}});
  EXPECT_EQ(fits(), (std::map<std::string, fit>{{"fits-x", fit::FITS},
                                                {"fits-y", fit::FITS},
                                                {"old", fit::TOO_OLD},
                                                {"other", fit::OTHER_TYPE}}));
  EXPECT_EQ(shown_need(needs[0].needs[0]), "B x 2.0 or y");
}

TEST_F(Needs, TakeTheFirstOfTwoTypesOfOneName) {
  of({{"a", NEEDS_B + "NeedsType = x\nNeedsVersion = 2\nNeedsType = x\n"},
      {"b", of_category("B", "Type = x\nVersion = 1\n")}});
  EXPECT_EQ(fits(), (std::map<std::string, fit>{{"b", fit::TOO_OLD}}));
}

TEST_F(Needs, WithoutATypeAreMetByEveryProductOfTheCategory) {
  of({{"a", NEEDS_B}, {"b", of_category("B")}});
  EXPECT_EQ(fits(), (std::map<std::string, fit>{{"b", fit::FITS}}));
}

TEST_F(Needs, AreMetByTheProductItself) {
  of({{"a", of_category("B") + NEEDS_B}});
  EXPECT_EQ(fits(), (std::map<std::string, fit>{{"a", fit::FITS}}));
  EXPECT_EQ(rings(), std::vector<std::string>{"ring a"});
}

TEST_F(Needs, OfAPatchAreMetByWhatTheProgramTakesOrAsksAbout) {
  const std::string kind = "Version = 1\nCategory = C\nType = t\n";
  of({{"a", "Name = A\nPatch = 1\nRequiredPatches = 0\n" + kind},
      {"b", "Name = A\n" + kind},
      {"c", "Name = C\n" + kind},
      {"d", "Name = A\nPatch = 2\n" + kind}});
  EXPECT_EQ(fits(), (std::map<std::string, fit>{{"b", fit::FITS}, {"c", fit::IF_ACCEPTED}}));
}

TEST_F(Needs, HaveANearestCandidate) {
  const auto& needs = of({{"a", NEEDS_B + "NeedsType = x\nNeedsVersion = 2\n"},
                          {"b", of_category("B", "Type = z\nVersion = 3\n")},
                          {"c", of_category("B", "Type = x\nVersion = 1.2\n")},
                          {"d", of_category("B", "Type = x\nVersion = 1.10\n")}});
  const candidate* nearest = nearest_candidate(needs, needs[0].needs[0]);
  ASSERT_NE(nearest, nullptr);
  EXPECT_EQ(needs[nearest->product].product->identifier, "d");
}

TEST_F(Needs, StandWhereTheyAreOpened) {
  const auto& needs = of({{"a", "Target = s\n" + NEEDS_B + "  NeedsType = x\n"}});
  EXPECT_EQ(needs[0].needs[0].place.line, 3U);
  ASSERT_EQ(needs[0].needs[0].types.size(), 1U);
  EXPECT_EQ(needs[0].needs[0].types[0].line, 4U);
  EXPECT_EQ(needs[0].needs[0].types[0].column, 3U);
}

TEST_F(Needs, AreLookedAtForProductsWithAnArchiveAndNoMoreThanTheTableHolds) {
  for (int i = 0; i < 51; ++i) write_file("p" + std::to_string(i) + ".tar", "");
  EXPECT_EQ(of({}).size(), TABLE_SIZE);
  EXPECT_EQ(of({{"a", ""}}).front().product->identifier, "a");
  std::filesystem::remove("a.tar");
  EXPECT_EQ(of({}).front().product->identifier, "p0");
}

TEST_F(Needs, MakeProspects) {
  const auto& needs = of({{"a", of_category("A")},
                          {"b", of_category("B", needing("A"))},
                          {"c", of_category("C", needing("missing"))},
                          {"d", of_category("D", needing("C"))},
                          {"e", of_category("E", needing("C", "Ask = ?\n"))},
                          {"f", of_category("F", needing("C", "SuppliersElsewhere = 1\n"))},
                          {"g", of_category("G", needing("H"))},
                          {"h", of_category("H", needing("G"))},
                          {"i", of_category("I", needing("H"))}});
  using enum prospect;
  EXPECT_EQ(prospects(needs), (std::vector{INSTALLABLE, INSTALLABLE, NEVER, NEVER, INSTALLABLE,
                                           INSTALLABLE, IN_RING, IN_RING, IN_RING}));
}

TEST_F(Needs, BuildRingsThatBeginWithTheFirstProduct) {
  of({{"a", of_category("A", needing("C"))},
      {"b", of_category("B", needing("A"))},
      {"c", of_category("C", needing("B", "Ask = ?\n"))},
      {"d", of_category("D", needing("A"))}});
  EXPECT_EQ(rings(), std::vector<std::string>{"ring a c b"});
}

TEST_F(Needs, BuildRingsThatAnotherSupplierAvoids) {
  of({{"a", of_category("A", needing("B"))},
      {"b", of_category("B", needing("A"))},
      {"c", of_category("B")}});
  EXPECT_EQ(rings(), std::vector<std::string>{"avoidable a b"});
}

TEST_F(Needs, BuildNoRingWhereASupplierMayBeElsewhere) {
  of({{"a", of_category("A", needing("B", "SuppliersElsewhere = 1\n"))},
      {"b", of_category("B", needing("A"))}});
  EXPECT_EQ(rings(), std::vector<std::string>());
}

TEST_F(Needs, BuildARingAlthoughAnotherNeedIsUnmet) {
  of({{"a", of_category("A", needing("B") + needing("missing"))},
      {"b", of_category("B", needing("A"))}});
  EXPECT_EQ(rings(), std::vector<std::string>{"ring a b"});
}

}  // namespace
}  // namespace morvane
