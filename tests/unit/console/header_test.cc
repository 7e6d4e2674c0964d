#include "console/header.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

// Prints the header on a screen of 20 columns between the frames `left` and `right`.
std::string header(std::string_view left, std::string_view right,
                   std::string_view ruler = "--------------------") {
  use_test_messages();
  set_message(RULER, ruler);
  set_message(LEFT_FRAME, left);
  set_message(RIGHT_FRAME, right);
  set_message(HEADER_TITLE, "TITLE 100%s as is");
  set_message(HEADER_SUBTITLE, "SUB");
  set_message(HEADER_TEXT_1, "One %s ");
  set_message(HEADER_TEXT_2, "paragraph ");
  set_message(HEADER_TEXT_3, "of five");
  set_message(HEADER_TEXT_4, "");
  set_message(HEADER_TEXT_5, " texts.");
  return in_child("",
                  [] {
                    show_install_header();
                    return "";
                  })
      .out;
}

TEST(Header, IsABoxAsWideAsTheRuler) {
  EXPECT_EQ(header("* ", " *"),
            "--------------------\n"
            "*                  *\n"
            "TITLE 100%s as is\n"
            "*                  *\n"
            "SUB\n"
            "*                  *\n"
            "* One %s paragraph *\n"
            "* of five texts.   *\n"
            "*                  *\n"
            "--------------------\n");
}

TEST(Header, WithoutARightFramePadsNothing) {
  EXPECT_EQ(header("* ", ""),
            "--------------------\n"
            "* \n"
            "TITLE 100%s as is\n"
            "* \n"
            "SUB\n"
            "* \n"
            "* One  %s  paragraph\n"
            "* of five texts.\n"
            "* \n"
            "--------------------\n");
}

TEST(Header, WithFramesAsWideAsTheRulerWrapsNothing) {
  EXPECT_EQ(header("* ", " *", "----"),
            "----\n"
            "*  *\n"
            "TITLE 100%s as is\n"
            "*  *\n"
            "SUB\n"
            "*  *\n"
            "* One %s paragraph of five texts. *\n"
            "*  *\n"
            "----\n");
}

}  // namespace
}  // namespace morvane
