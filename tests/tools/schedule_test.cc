#include "install/schedule.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/child.h"

namespace morvane {
namespace {

using waits = std::vector<std::vector<std::size_t>>;

struct tried_product {
  std::string directory;
  std::vector<std::string> needed;
};

waits waits_among(const std::vector<tried_product>& products) {
  install_plan plan;
  for (const auto& [directory, needed] : products) {
    product_plan& product = plan.products.emplace_back();
    product.facts.path = directory;
    for (const std::string& each : needed) {
      product.settings.needs.emplace_back().directory = each;
    }
  }
  return waits_of(plan);
}

TEST(Schedule, ProductsThatDoNotTouchEachOtherDoNotWait) {
  EXPECT_EQ(waits_among({{"/opt/a", {}}, {"/opt/ab", {"/elsewhere"}}, {"/opt/b", {"/opt"}}}),
            (waits{{}, {}, {}}));
}

TEST(Schedule, OneInTheDirectoryOfAnotherWaits) {
  EXPECT_EQ(waits_among({{"/opt/a", {}}, {"/opt/a", {}}, {"/opt/a/b/c", {}}, {"/opt", {}}}),
            (waits{{}, {0}, {0, 1}, {0, 1, 2}}));
  EXPECT_EQ(waits_among({{"/", {}}, {"/opt/a", {}}}), (waits{{}, {0}}));
}

TEST(Schedule, OneThatNeedsAnotherWaitsAndSoDoesOneThatIsNeededByAnEarlierOne) {
  EXPECT_EQ(waits_among({{"/opt/a", {}}, {"/opt/b", {"/opt/c", "/opt/a"}}, {"/opt/c", {}}}),
            (waits{{}, {0}, {1}}));
}

TEST(Schedule, LinksAreFollowed) {
  const scratch_directory here;
  std::filesystem::create_directories("real/a");
  std::filesystem::create_symlink("real", "link");
  const std::string top = here.path();
  EXPECT_EQ(waits_among({{top + "/real/a", {}}, {top + "/link/a", {}}, {top + "/x", {"link/a"}}}),
            (waits{{}, {0}, {0, 1}}));
  EXPECT_TRUE(is_below(top + "/link/a/new", top + "/real"));
  EXPECT_FALSE(is_below(top + "/linked", top + "/link"));
}

}  // namespace
}  // namespace morvane
