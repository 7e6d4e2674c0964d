#include "platform/diagnostic.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>

#include "support/child.h"

namespace morvane {
namespace {

TEST(Diagnostic, GoesToStandardErrorAsItIsGiven) {
  const outcome seen = in_child("", [] {
    diagnose("100%s\\n");
    diagnose(std::string_view("a\0b\n", 4));
    return "";
  });
  EXPECT_EQ(seen.err, std::string_view("100%s\\na\0b\n", 11));
  EXPECT_EQ(seen.out, "");
}

TEST(Diagnostic, NamesTheProgramAndTheKind) {
  const outcome seen = in_child("", [] {
    diagnose_warning("100%s");
    diagnose_error("'file'.");
    return "";
  });
  EXPECT_EQ(seen.err, "morvane : warning : 100%s\nmorvane : error : 'file'.\n");
}

TEST(Diagnostic, ComesAfterWhatWasPrintedBefore) {
  const outcome seen = in_child("", [] {
    dup2(STDOUT_FILENO, STDERR_FILENO);
    std::fputs("before ", stdout);
    diagnose("diagnostic ");
    std::fputs("behind", stdout);
    return "";
  });
  EXPECT_EQ(seen.out, "before diagnostic behind");
}

}  // namespace
}  // namespace morvane
