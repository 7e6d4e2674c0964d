#include "console/printer.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

std::string printed(const std::function<void()>& code) {
  const outcome seen = in_child("", [&] {
    code();
    return "";
  });
  EXPECT_EQ(seen.err, "");
  return seen.out;
}

TEST(Printer, PrintsATextAsItIs) {
  EXPECT_EQ(printed([] { print("100%s\\n"); }), "100%s\\n");
  EXPECT_EQ(printed([] { print(""); }), "");
}

TEST(Printer, TheScreenIsAsWideAsTheRuler) {
  use_test_messages();
  EXPECT_EQ(screen_width(), 60);
  set_message(RULER, "");
  EXPECT_EQ(screen_width(), 0);
  set_message(RULER, "=-=-=");
  EXPECT_EQ(screen_width(), 5);
}

TEST(Printer, PrintsWrappedLinesInTheirFrames) {
  EXPECT_EQ(printed([] { print_with_cr2("aaa bb cc dddd", 14, "[ ", " ]"); }),
            "[ aaa bb  cc ]\n[ dddd       ]\n");
}

TEST(Printer, PrintsWrappedLinesWithoutFrames) {
  EXPECT_EQ(printed([] { print_with_cr("aaa bb cc dddd", 10); }), "aaa bb  cc\ndddd\n");
  EXPECT_EQ(printed([] { print_with_cr("100%d\n", 10); }), "100%d\n");
}

}  // namespace
}  // namespace morvane
