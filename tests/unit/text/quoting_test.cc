#include "text/quoting.h"

#include <gtest/gtest.h>

#include "platform/shell.h"
#include "support/child.h"

namespace morvane {
namespace {

using namespace std::string_literals;

constexpr std::string_view PLAIN =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_./-+,@~";

TEST(Quote, LeavesPlainWordsAsTheyStand) {
  EXPECT_EQ(quote(PLAIN), PLAIN);
  EXPECT_EQ(quote("-x"), "-x");
  EXPECT_EQ(quote("a~"), "a~");
  EXPECT_EQ(quote(""), "");
}

TEST(Quote, PutsEverythingElseIntoSingleQuotes) {
  EXPECT_EQ(quote("~user"), "'~user'");
  EXPECT_EQ(quote("two words"), "'two words'");
  EXPECT_EQ(quote("it's"), "'it'\\''s'");
  EXPECT_EQ(quote("'"), "''\\'''");
  EXPECT_EQ(quote("*.tar"), "'*.tar'");
  EXPECT_EQ(quote("\303\244"), "'\303\244'");
}

TEST(Quote, DecidesForEachByteByItself) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string value = {'a', static_cast<char>(byte)};
    const bool plain = PLAIN.find(static_cast<char>(byte)) != std::string_view::npos;
    EXPECT_EQ(quote(value).starts_with('\''), !plain) << byte;
  }
}

TEST(Quote, BringsEveryByteThroughTheShell) {
  const scratch_directory here;
  std::string bytes;
  for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
  for (const std::string& value : {bytes, "~root"s, "$(exit)`x`\\"s, "-n"s}) {
    EXPECT_TRUE(run_command("printf %s " + quote(value) + " > printed"));
    EXPECT_EQ(read_file("printed"), value);
  }
}

TEST(SpecialCharacters, AreThoseThatMakeOrTheShellInterpret) {
  const std::string special = "'\"\\$;&|<>()*?[]{}!#%:=`^\177";
  for (int c = 1; c < 256; ++c) {
    const char byte = static_cast<char>(c);
    const bool expected = c <= 32 || special.find(byte) != std::string::npos;
    EXPECT_EQ(holds_special_characters(std::string("/a") + byte + "b"), expected) << c;
  }
  EXPECT_FALSE(holds_special_characters("/a.b-c_d+e,f@g~h"));
  EXPECT_FALSE(holds_special_characters(""));
}

}  // namespace
}  // namespace morvane
