#include "catalogue/product_files.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

TEST(InstalledProducts, LieInTheDirectoryThatAMessageNames) {
  use_test_messages();
  EXPECT_EQ(installed_products_directory("/opt/x"), "/opt/x/install");
  EXPECT_EQ(installed_products_directory(""), "/install");
  set_message(INSTALLED_PRODUCTS_DIRECTORY, "etc/100%s");
  EXPECT_EQ(installed_products_directory("/opt/x"), "/opt/x/etc/100%s");
}

TEST(DescriptionPath, LiesInItsDirectoryUnderTheIdentifier) {
  EXPECT_EQ(description_path(".", "tool-1.2"), "./tool-1.2.descr");
}

TEST(ProductFiles, AreKnownByTheirEndings) {
  const scratch_directory here;
  for (const char* name : {"tool-1.2.tar", "a.tar.descr", "tar", "b.tar", "b.descr"}) {
    write_file(name, "");
  }
  EXPECT_EQ(archives_in("."), (identifiers{"b", "tool-1.2"}));
  EXPECT_EQ(descriptions_in("."), (identifiers{"a.tar", "b"}));
  EXPECT_EQ(descriptions_in("nowhere"), identifiers());
}

TEST(ProductFiles, ThatCannotBeListedAreNotNone) {
  const scratch_directory here;
  write_file("-z.tar", "");
  testing::internal::CaptureStderr();
  EXPECT_EQ(archives_in("."), std::nullopt);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "morvane : error : directory '.' cannot be listed\n");
}

}  // namespace
}  // namespace morvane
