#include "install_makefile/product_settings.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(ProductSettings, AreThoseOfTheProductAndOfWhatItNeeds) {
  const product_settings settings = read_settings(
      "# A = comment\n\nHOST_OS = Linux6\nPRODUCT_NAME = Tansy day greeting\n"
      "PRODUCT_PATH = /opt/tansy\nPRODUCT_OWNER = lena\nPRODUCT_GROUP = readers\n"
      "PRODUCT_ACCESS = 0\nPRODUCT_VERSION = 1.2, patch 1\n"
      "ALMANAC_NAME = Fennick = almanac\nALMANAC_PATH = /opt/almanac\nALMANAC_TYPE = days\n"
      "ALMANAC_VERSION = 3.1\nREAD_ME_NAME = \nREAD_ME_PATH = /r\n");
  EXPECT_EQ(settings.name, "Tansy day greeting");
  EXPECT_EQ(settings.directory, "/opt/tansy");
  EXPECT_EQ(settings.owner, "lena");
  EXPECT_EQ(settings.group, "readers");
  EXPECT_FALSE(settings.access);
  EXPECT_EQ(settings.version, "1.2, patch 1");
  const std::vector<settled_need> needs = {
      {"ALMANAC", "Fennick = almanac", "/opt/almanac", "days", "3.1"},
      {"READ_ME", "", "/r", "", ""}};
  EXPECT_EQ(settings.needs, needs);
}

TEST(ProductSettings, PassOverWhatIsNone) {
  EXPECT_EQ(read_settings(""), product_settings());
  EXPECT_EQ(read_settings("x\nA_PATH = /a\n = \nB_ = c\nHOST = d\nPRODUCT_ACCESS"),
            product_settings());
}

}  // namespace
}  // namespace morvane
