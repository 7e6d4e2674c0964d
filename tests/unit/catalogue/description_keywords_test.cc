#include "catalogue/description_keywords.h"

#include <gtest/gtest.h>

#include "support/descriptions.h"

namespace morvane {
namespace {

// A list as it stands in a description, and what is stored of it (see `joined`).
struct lists {
  std::string value;
  std::string stored;
};

// Returns `entries` in a line, "-" for one that marks an end, up to the last that does not.
std::string joined(const auto& entries) {
  std::string line;
  for (const auto& entry : entries) {
    const std::string shown = show(entry);
    const bool marks_end = shown.empty() || shown == "(absent)" || shown == "-1";
    line += (marks_end ? "-" : shown) + " ";
  }
  while (line.ends_with("- ")) line.resize(line.size() - 2);
  return line.substr(0, line.empty() ? 0 : line.size() - 1);
}

// Returns "1 2 3" and so on up to `count`.
std::string numbers(int count) {
  std::string line = "1";
  for (int i = 2; i <= count; ++i) line += " " + std::to_string(i);
  return line;
}

TEST_F(Description, AVersionHasThreeParts) {
  const struct {
    std::string_view value;
    std::string_view parts;
  } rows[] = {
      {"2.1", "2 1 0"},
      {"3", "3 0 0"},
      {"1.2.3.4", "1 2 3"},
      {"1..3", "1 0 3"},
      {".5", "0 5 0"},
      {"1.", "1 0 0"},
      {"a.b.c", "0 0 0"},
      {"1a.2b.3c", "1 2 3"},
      {"-1.-2.-3", "-1 -2 -3"},
      {"\" 1. 2. 3\"", "1 2 3"},
      {"", "0 0 0"},
      {"99999999999.0.2147483648", "2147483647 0 2147483647"},
  };
  const auto parts_of = [](const release& stored) {
    return show(stored.version) + " " + show(stored.subversion) + " " + show(stored.minorversion);
  };
  for (const auto& row : rows) {
    const std::string value = " = " + show(row.value) + "\n";
    const reading seen = read(TYPE + "Version = 9.9.9\nVersion" + value +
                              "NeedsVersion = 9.9.9\nNeedsVersion" + value);
    EXPECT_EQ(parts_of(seen.record.release), row.parts) << row.value;
    EXPECT_EQ(parts_of(type(seen.record).release), row.parts) << row.value;
  }
}

TEST_F(Description, ANumberSaturatesAndIsZeroWithoutDigits) {
  EXPECT_EQ(read("Patch = 2147483648\n").record.release.patch, 2147483647);
  EXPECT_EQ(read("Patch = -99999999999\n").record.release.patch, -2147483647 - 1);
  EXPECT_EQ(read("Patch = 5\nPatch = five\n").record.release.patch, 0);
  EXPECT_EQ(target(read(TARGET + "SuppliersElsewhere = -1\n").record).need_no_install, -1);
  EXPECT_EQ(read("Patch = 5\nPatch =\n").record.release.patch, 0);
}

TEST_F(Description, AnExplicitStateIsStoredAndZeroIsDescribed) {
  EXPECT_EQ(read("DescriptionState = 5\n").record.descr_avail, 5);
  EXPECT_EQ(read("DescriptionState = -1\n").record.descr_avail, -1);
  for (const std::string value : {"0", "", "none"}) {
    EXPECT_EQ(read("DescriptionState = " + value + "\n").record.descr_avail, 2) << value;
  }
}

TEST_F(Description, AnExplicitStateDisablesTheFixedLists) {
  for (const std::string list : {"FixedOwners", "FixedGroups"}) {
    const std::string entry = list + " = name\n";
    EXPECT_EQ(read("DescriptionState = 5\n" + entry).errors, unknown(list));
    EXPECT_EQ(read("DescriptionState = 5\n" + entry).record.descr_avail, 5);
    EXPECT_EQ(read("DescriptionState = 5\nDescriptionState = 0\n" + entry).errors, unknown(list));
    EXPECT_EQ(read("DescriptionState = 0\n" + entry).errors, "");
    EXPECT_EQ(read("DescriptionState = 0\n" + entry).record.descr_avail, 1);
    EXPECT_EQ(read(entry + "DescriptionState = 5\n").errors, "");
    EXPECT_EQ(read(entry + "DescriptionState = 5\n").record.descr_avail, 5);
    EXPECT_EQ(read(entry + "DescriptionState = 0\n").record.descr_avail, 2);
  }
}

TEST_F(Description, AFileListEndsAtItsFirstAbsentName) {
  const std::string nineteen = numbers(19);
  const lists rows[] = {
      {"bin/tool", "bin/tool"},
      {"\"a b\tc\"", "a b c"},
      {"\"  a   b  \"", "a b"},
      {"\"" + nineteen + "\"", nineteen},
      {"\"" + numbers(20) + "\"", nineteen},
      {"\"a b c\"\nNeedsFiles = d", "d - c"},
      {"\"a b c\"\nNeedsFiles =", "a b c"},
      {"\"a b c\"\nNeedsFiles = \"  \"", "- b c"},
      {"\"" + nineteen + "\"\nNeedsFiles = \"" + nineteen + "\"", nineteen},
  };
  for (const lists& row : rows) {
    const reading seen = read(TYPE + "NeedsFiles = " + row.value + "\n");
    EXPECT_EQ(joined(type(seen.record).file_dep), row.stored);
    EXPECT_EQ(seen.errors, "");
  }
}

TEST_F(Description, APatchListEndsAtItsFirstMinusOne) {
  const std::string nineteen = numbers(19);
  const lists rows[] = {
      {"7", "7"},
      {"-1", ""},
      {"", ""},
      {"none", ""},
      {"\"12 13\"", "12 13"},
      {"\"12\t13\"", "12 13"},
      {"12,13", "12"},
      {"\"12,13 14\"", "12 14"},
      {"\"5 -6 -1\"", "5 6 1"},  // only the first number has a sign
      {"\"-5 6\"", "-5 6"},
      {"\"-1 6\"", ""},
      {"+5", "5"},
      {"\"5 x 6\"", "5 6"},
      {"\"5 x6 none\"", "5 6"},
      {"\" 5 6\"", "5 5 6"},  // a leading blank reads the first number twice
      {"\"1 99999999999\"", "1 2147483647"},
      {"\"" + nineteen + "\"", nineteen},
      {"\"" + numbers(20) + "\"", nineteen},
      {"\"1 2 3\"\nRequiredPatches = 9", "9 - 3"},
      {"\"1 2 3\"\nRequiredPatches =", "- 2 3"},
  };
  for (const lists& row : rows) {
    const reading seen = read("RequiredPatches = " + row.value + "\n");
    std::vector<int> levels;
    for (const needed_patch& patch : seen.record.needed_patches) levels.push_back(patch.level);
    EXPECT_EQ(joined(levels), row.stored) << row.value;
    EXPECT_EQ(seen.errors, "");
  }
}

TEST_F(Description, AFixedListOverwritesTheEntriesThatItFills) {
  const std::string ten = numbers(10);
  const lists rows[] = {
      {"root", "root"},
      {"\"a b\tc\"", "a b c"},
      {"\"  a  b\"", "a b"},
      {"\"a " + of(50, 'n') + " b\"", "a " + of(49, 'n') + " b"},
      {"\"" + ten + "\"", ten},
      {"\"" + ten + " \"", ten},
      {"\"" + numbers(11) + "\"", ten},
      {"\"" + numbers(11) + " \"", ten},
      {"\"a b c\"\nWORD = d", "d b c"},
      {"\"a b c\"\nWORD = \"d \"", "d - c"},
      {"\"a b c\"\nWORD =", "a b c"},
      {"\"a b c\"\nWORD = \"  \"", "- b c"},
      {"", ""},
  };
  for (const std::string word : {"FixedOwners", "FixedGroups"}) {
    set_message(word == "FixedOwners" ? KEYWORD_FIXED_OWNERS : KEYWORD_FIXED_GROUPS, "WORD");
    for (const lists& row : rows) {
      const reading seen = read("WORD = " + row.value + "\n");
      EXPECT_EQ(joined(word == "FixedOwners" ? seen.record.fix_owner : seen.record.fix_group),
                row.stored);
      EXPECT_EQ(seen.record.descr_avail, 1);
      EXPECT_EQ(seen.errors, "");
    }
    use_test_messages();
  }
}

TEST(AppendedText, IsAFurtherLine) {
  long_text text;
  append_text(text, "");
  EXPECT_EQ(text, "");
  append_text(text, "b");
  EXPECT_EQ(text, "\nb");
  append_text(text, "");
  EXPECT_EQ(text, "\nb\n");
  long_text other;
  append_text(other, "a");
  EXPECT_EQ(other, "a");
}

TEST(AppendedText, HasRoomForTheRestOfTheFileOnceItIsLarge) {
  constexpr std::size_t TO_COME = 100000;
  const std::string long_line(5000, 'x');
  long_text text = "first";
  append_text(text, "second", TO_COME);
  EXPECT_LT(text->capacity(), TO_COME);
  append_text(text, long_line, TO_COME);
  EXPECT_TRUE(text == "first\nsecond\n" + long_line);
  EXPECT_GE(text->capacity(), text->size() + TO_COME);
}

}  // namespace
}  // namespace morvane
