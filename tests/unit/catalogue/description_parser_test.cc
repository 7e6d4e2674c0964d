#include "catalogue/description_parser.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "catalogue/description_keywords.h"
#include "support/descriptions.h"

namespace morvane {
namespace {

// A keyword, what it gives when it stands twice with the values 7 and 8, the longest value that it
// keeps (0: any), and its field in the product or in the first target, category and type.
struct field {
  message_number keyword;
  std::string_view of_7_and_8;
  std::size_t longest;
  std::string (*value)(const product& p);
};

// In the order in which the keywords are tried.
const field FIELDS[] = {
    {KEYWORD_DESCRIPTION_STATE, "8", 0, [](const product& p) { return show(p.descr_avail); }},
    {KEYWORD_NAME, "8", 49, [](const product& p) { return show(p.name); }},
    {KEYWORD_FULL_NAME, "8", 79, [](const product& p) { return show(p.full_name); }},
    {KEYWORD_VERSION, "8", 0, [](const product& p) { return show(p.release.version); }},
    {KEYWORD_PATCH, "8", 0, [](const product& p) { return show(p.release.patch); }},
    {KEYWORD_CATEGORY, "8", 49, [](const product& p) { return show(p.category); }},
    {KEYWORD_TYPE, "8", 49, [](const product& p) { return show(p.type); }},
    {KEYWORD_ABSTRACT, "7\n8", 0, [](const product& p) { return show(p.abstract); }},
    {KEYWORD_HARDWARE, "7\n8", 0, [](const product& p) { return show(p.hardware); }},
    {KEYWORD_TARGET, "7", 79, [](const product& p) { return show(target(p).target); }},
    {KEYWORD_SUPPLIERS_ELSEWHERE, "8", 0,
     [](const product& p) { return show(target(p).need_no_install); }},
    {KEYWORD_ASK, "7\n8", 0, [](const product& p) { return show(target(p).ask); }},
    {KEYWORD_ASK_AGAIN, "7\n8", 0, [](const product& p) { return show(target(p).re_ask); }},
    {KEYWORD_TARGET_OWNER, "8", 0, [](const product& p) { return show(target(p).fix_owner); }},
    {KEYWORD_TARGET_GROUP, "8", 0, [](const product& p) { return show(target(p).fix_group); }},
    {KEYWORD_NEEDS_CATEGORY, "7", 49, [](const product& p) { return show(category(p).category); }},
    {KEYWORD_NEEDS_TEXT, "8", 79, [](const product& p) { return show(category(p).text); }},
    {KEYWORD_NEEDS_TYPE, "7", 49, [](const product& p) { return show(type(p).type); }},
    {KEYWORD_NEEDS_VERSION, "8", 0, [](const product& p) { return show(type(p).release.version); }},
    {KEYWORD_NEEDS_PATCH, "8", 0, [](const product& p) { return show(type(p).release.patch); }},
    {KEYWORD_NEEDS_PATH, "8", 127, [](const product& p) { return show(type(p).std_path); }},
    {KEYWORD_NEEDS_FILES, "8", 0, [](const product& p) { return show(type(p).file_dep[0]); }},
    {KEYWORD_REQUIRED_PATCHES, "8", 0,
     [](const product& p) { return show(p.needed_patches[0].level); }},
    {KEYWORD_PATH, "8", 127, [](const product& p) { return show(p.path); }},
    {KEYWORD_PATH_INFO, "7\n8", 0, [](const product& p) { return show(p.path_info); }},
    {KEYWORD_PATH_VARIABLE, "8", 127, [](const product& p) { return show(p.path_env_var); }},
    {KEYWORD_OWNER, "8", 49, [](const product& p) { return show(p.owner); }},
    {KEYWORD_OWNER_INFO, "7\n8", 0, [](const product& p) { return show(p.owner_info); }},
    {KEYWORD_GROUP, "8", 49, [](const product& p) { return show(p.group); }},
    {KEYWORD_GROUP_INFO, "7\n8", 0, [](const product& p) { return show(p.group_info); }},
    {KEYWORD_ACCESS_INFO, "7\n8", 0, [](const product& p) { return show(p.other_access_info); }},
    {KEYWORD_NEEDED_TOOLS, "7\n8", 0, [](const product& p) { return show(p.needed_tools); }},
    {KEYWORD_FIXED_OWNERS, "8", 49, [](const product& p) { return show(p.fix_owner[0]); }},
    {KEYWORD_FIXED_GROUPS, "8", 49, [](const product& p) { return show(p.fix_group[0]); }},
};

// Returns the entries that open what the keyword of `needing` belongs to.
std::string opened_for(const field& needing) {
  std::string entries;
  for (const field* each = FIELDS; each != &needing; ++each) {
    const bool opens = each->keyword == KEYWORD_TARGET || each->keyword == KEYWORD_NEEDS_CATEGORY ||
                       each->keyword == KEYWORD_NEEDS_TYPE;
    if (opens) entries += show(r[each->keyword]) + " = opened\n";
  }
  return entries;
}

// Returns the record as a text, but for its identifier and state.
std::string all_fields(const product& record) {
  std::string fields;
  for (const field& each : FIELDS) fields += each.value(record) + ";";
  return fields;
}

std::string fields_of(const std::string& content) {
  return all_fields(read(content).record);
}

TEST_F(Description, EveryKeywordHasItsFieldAndRepeatsInItsWay) {
  EXPECT_EQ(std::size(FIELDS), 34U);
  for (const field& each : FIELDS) {
    const std::string word = show(r[each.keyword]);
    const std::string once = opened_for(each) + word + " = 7\n";
    EXPECT_EQ(read(once).errors, "") << word;
    EXPECT_EQ(each.value(read(once).record), "7") << word;
    const reading twice = read(once + word + " = \"8\"\n");
    EXPECT_EQ(twice.errors, "") << word;
    EXPECT_EQ(each.value(twice.record), each.of_7_and_8) << word;
  }
}

TEST_F(Description, OfEqualKeywordsTheFirstTriedCounts) {
  for (const field& first : FIELDS) {
    use_test_messages();
    for (const field* each = &first; each != std::end(FIELDS); ++each) {
      set_message(each->keyword, "Same");
    }
    const reading seen = read(opened_for(first) + "Same = 7\n");
    EXPECT_EQ(seen.errors, "") << first.keyword;
    for (const field& each : FIELDS) {
      EXPECT_EQ(each.value(seen.record) == "7", &each == &first) << each.keyword;
    }
  }
}

TEST_F(Description, ATooLongValueIsCutToItsField) {
  for (const field& each : FIELDS) {
    if (each.longest == 0) continue;
    const std::string entry = opened_for(each) + show(r[each.keyword]) + " = ";
    const std::string longest = of(each.longest, 'v');
    EXPECT_EQ(each.value(read(entry + longest + "\n").record), longest) << each.keyword;
    EXPECT_EQ(each.value(read(entry + longest + "w\n").record), longest) << each.keyword;
    EXPECT_EQ(read(entry + longest + "w\n").errors, "") << each.keyword;
  }
}

TEST_F(Description, AnEmptyOrBlankFileIsAvailableAndSetsNothing) {
  const std::string fields = "2" + all_fields(product()).substr(1);
  for (const std::string& content :
       {std::string(), "\n \t\v\r\f\n" + std::string("# comment\n#\n #last")}) {
    const reading seen = read(content);
    EXPECT_EQ(seen.errors, "");
    EXPECT_EQ(seen.record.install, product_state::INITIALISED);
    EXPECT_EQ(seen.record.id, "x");
    EXPECT_EQ(all_fields(seen.record), fields);
  }
}

TEST_F(Description, ThatCannotBeOpenedLeavesAnInitialisedRecord) {
  const reading seen = read(std::nullopt);
  EXPECT_EQ(seen.errors, "");
  EXPECT_EQ(seen.record.install, product_state::INITIALISED);
  EXPECT_EQ(seen.record.id, "x");
  EXPECT_EQ(all_fields(seen.record), all_fields(product()));
}

// Reads "./x.descr", which lies there already; what is returned stands before the report.
std::string read_existing() {
  product record;
  testing::internal::CaptureStderr();
  const read_outcome outcome = read_product(".", "x", record);
  const std::string told = testing::internal::GetCapturedStderr();
  const char* const names[] = {"done", "missing", "impossible"};
  return std::string(names[static_cast<int>(outcome)]) + " " + std::string(record.name) +
         std::to_string(record.descr_avail) + "\n" + told;
}

const std::string CANNOT_BE_READ = "morvane : warning : description './x.descr' cannot be read\n";

TEST_F(Description, ThatIsNotThereOrCannotBeIsSilent) {
  const scratch_directory here;
  EXPECT_EQ(read_existing(), "missing 0\n");
  std::filesystem::create_symlink("nowhere", "x.descr");
  EXPECT_EQ(read_existing(), "missing 0\n");
  product record;
  testing::internal::CaptureStderr();
  EXPECT_EQ(read_product("x.descr/below", "y", record), read_outcome::MISSING);
  EXPECT_EQ(read_product(".", std::string(300, 'y'), record), read_outcome::MISSING);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Description, ThatIsThereAndCannotBeOpenedIsToldOf) {
  const scratch_directory here;
  for (const char* target : {"x.descr", "/dev/zero"}) {
    std::filesystem::create_symlink(target, "x.descr");
    EXPECT_EQ(read_existing(), "impossible 0\n" + CANNOT_BE_READ) << target;
    std::filesystem::remove("x.descr");
  }
  if (geteuid() == 0) return;  // who may read everything
  write_file("x.descr", "Name = n\n");
  std::filesystem::permissions("x.descr", std::filesystem::perms::none);
  EXPECT_EQ(read_existing(), "impossible 0\n" + CANNOT_BE_READ);
}

TEST_F(Description, ThatIsADirectoryCannotBeRead) {
  const scratch_directory here;
  std::filesystem::create_directory("x.descr");
  EXPECT_EQ(read_existing(), "impossible 2\n" + CANNOT_BE_READ);
}

TEST_F(Description, OfTheNullDeviceIsEmpty) {
  const scratch_directory here;
  std::filesystem::create_symlink("/dev/null", "x.descr");
  EXPECT_EQ(read_existing(), "done 2\n");
}

TEST_F(Description, CountsUpToAnErrorInReading) {
  const scratch_directory here;
  ASSERT_EQ(mkfifo("x.descr", 0600), 0);
  // A pipe whose writer has written and not closed: behind its bytes, reading fails.
  const int pipe_end = open("x.descr", O_RDWR | O_CLOEXEC);
  ASSERT_EQ(write(pipe_end, "Name = first", 12), 12);
  EXPECT_EQ(read_existing(), "done first2\n" + CANNOT_BE_READ);
  close(pipe_end);
}

TEST_F(Description, HandsEachFaultOverWithItsPlace) {
  const scratch_directory here;
  write_file("x.descr",
             "# comment\nName = n\n  Nmae = m\nAsk = \"now?\"\n"
             "Target = t  # more\nNeedsPath = /p\nAbstract = \"open");
  std::string seen;
  product record;
  read_product(".", "x", record, [&](const description_fault& fault) {
    seen += std::to_string(fault.place.line) + ":" + std::to_string(fault.place.column) + ":" +
            std::to_string(static_cast<int>(fault.kind)) + ":" + std::string(fault.keyword) + " ";
  });
  EXPECT_EQ(seen, "3:3:0:Nmae 4:1:2:Ask 4:5:0: 6:1:3:NeedsPath 6:11:0: 7:1:5:Abstract ");
}

TEST_F(Description, NothingOfAnEarlierRecordIsLeft) {
  product record = read("Name = n\nDescriptionState = 5\nAbstract = a\n" + TYPE).record;
  record.install = product_state::INSTALLED;
  record.other_access = 0;
  read_product("/nonexistent", "y", record);
  EXPECT_EQ(record.install, product_state::INITIALISED);
  EXPECT_EQ(record.id, "y");
  EXPECT_EQ(record.other_access, 1);
  EXPECT_EQ(all_fields(record), all_fields(product()));
}

TEST_F(Description, ALongIdentifierIsWholeInReportsAndCutInTheRecord) {
  const std::string identifier = of(49, 'i') + "jk";
  const reading seen = read("Ask = ?\n", identifier, "sub");
  EXPECT_EQ(seen.record.id, of(49, 'i'));
  EXPECT_EQ(seen.errors, "morvane : Error in " + identifier + ".descr : Ask ignored !\n" +
                             "morvane : unkown keyword '' found in file 'sub/" + identifier +
                             ".descr'\n");
}

TEST_F(Description, ACommentIsSkippedFor255Characters) {
  EXPECT_EQ(read("#" + of(254, '-') + "\nName = n\n").record.name, "n");
  EXPECT_EQ(read("#" + of(255, '-') + "Name = n\n").record.name, "n");
  EXPECT_EQ(read("#" + of(254, '-') + "Name = n\n").errors, unknown("ame"));
  EXPECT_EQ(read("#" + of(255, '-') + "\nName = n\n").errors, "");
}

TEST_F(Description, AnUnknownKeywordIsReportedAndItsLineSkippedFor255Characters) {
  const std::string name = "Name = n\n";
  EXPECT_EQ(read("Foo = \"bar\"\n" + name).errors, unknown("Foo"));
  EXPECT_EQ(read("Foo = \"bar\"\n" + name).record.name, "n");
  EXPECT_EQ(read("Foo" + of(255, '-') + name).errors, unknown("Foo"));
  EXPECT_EQ(read("Foo" + of(255, '-') + name).record.name, "n");
  EXPECT_EQ(read("Foo" + of(254, '-') + name).errors, unknown("Foo") + unknown("ame"));
}

TEST_F(Description, AKeywordIsALongestRunOfLettersAndUnderscores) {
  for (const std::string word : {"name", "NAME", "Nam", "NameX", "_Name", "a_B_"}) {
    EXPECT_EQ(read(word + " = n\n").errors, unknown(word));
  }
  EXPECT_EQ(read(of(3000, 'k') + " = n\n").errors, unknown(of(3000, 'k')));
  EXPECT_EQ(read("Name1 = n\nPath=/p\n").errors, unknown(""));
  for (const std::string word : {"= n\n", "1 = n\n", "\" = n\n", "\303\244 = n\n"}) {
    EXPECT_EQ(read(word).errors, unknown("")) << word;
  }
  EXPECT_EQ(read("Name=n\n").record.name, "n");
}

TEST_F(Description, ASecondWordIsReadAsAKeywordWithoutItsFirstLetter) {
  const reading seen = read("Name = Foo Bar\nPath = /p\n");
  EXPECT_EQ(seen.record.name, "Foo");
  EXPECT_EQ(seen.errors, unknown("ar"));
  EXPECT_EQ(seen.record.path, "/p");
}

TEST_F(Description, AKeywordWithoutAnEqualsSignHasAnEmptyValue) {
  const reading seen = read("Name = n\nName\nAbstract Foo\nPath = /p");
  EXPECT_EQ(seen.record.name, "");
  EXPECT_EQ(show(seen.record.abstract), "");
  EXPECT_EQ(seen.errors, unknown("oo"));
  EXPECT_EQ(seen.record.path, "/p");
}

TEST_F(Description, AnEmptyValueIsSet) {
  const reading seen =
      read(TARGET + "Abstract =\nAsk =\nTargetOwner = \"\"\nTargetGroup = # none\n");
  for (const long_text& field : {seen.record.abstract, target(seen.record).ask,
                                 target(seen.record).fix_owner, target(seen.record).fix_group}) {
    EXPECT_EQ(field, "");
  }
  EXPECT_EQ(show(read("Abstract =\nAbstract =\n").record.abstract), "\n");
  EXPECT_EQ(show(read("Abstract = a\nAbstract =\nAbstract = \"b c\"\n").record.abstract),
            "a\n\nb c");
}

TEST_F(Description, TheRestOfAnOverlongValueIsReadAsEntries) {
  const reading seen = read("Abstract = \"" + of(1025, 'a') + "bc\" rest\nName = n\n");
  EXPECT_EQ(show(seen.record.abstract), of(1025, 'a'));
  EXPECT_EQ(seen.errors, "morvane : warning : read line to long (max=1024)\n" + unknown("bc"));
  EXPECT_EQ(seen.record.name, "n");
}

TEST_F(Description, EntriesOfATargetNeedOne) {
  for (const std::string& before : {std::string(), repeat(13, TARGET)}) {
    for (const std::string word :
         {"SuppliersElsewhere", "Ask", "AskAgain", "TargetOwner", "TargetGroup", "NeedsCategory"}) {
      const reading seen = read(before + word + " = \"7 8\"\nName = n\n");
      EXPECT_EQ(seen.errors, ignored(word));
      EXPECT_EQ(all_fields(seen.record), fields_of(before + "Name = n\n"));
    }
  }
}

TEST_F(Description, EntriesOfACategoryNeedOneInTheLastTarget) {
  for (const std::string& before :
       {std::string(), TARGET, TYPE + TARGET, repeat(13, TARGET), TARGET + repeat(11, NEEDED)}) {
    for (const std::string word :
         {"NeedsText", "NeedsType", "NeedsVersion", "NeedsPatch", "NeedsPath", "NeedsFiles"}) {
      const reading seen = read(before + word + " = \"7 8\"\nName = n\n");
      // The report on a path names the patch level.
      EXPECT_EQ(seen.errors, misplaced(word == "NeedsPath" ? "NeedsPatch" : word)) << before;
      EXPECT_EQ(all_fields(seen.record), fields_of(before + "Name = n\n"));
    }
  }
}

TEST_F(Description, EntriesOfATypeNeedOneInTheLastCategory) {
  for (const std::string& before : {CATEGORY, TYPE + NEEDED, TYPE + CATEGORY}) {
    for (const std::string word : {"NeedsVersion", "NeedsPatch", "NeedsPath", "NeedsFiles"}) {
      const reading seen = read(before + word + " = \"7 8\"\nName = n\n");
      EXPECT_EQ(seen.errors, misplaced(word == "NeedsPath" ? "NeedsPatch" : word)) << before;
      EXPECT_EQ(all_fields(seen.record), fields_of(before + "Name = n\n"));
    }
  }
}

TEST_F(Description, ARejectedEntryIsMetAgainAtItsEqualsSign) {
  EXPECT_EQ(read("Ask foo\n").errors,
            "morvane : Error in x.descr : Ask ignored !\n" + unknown("foo"));
  EXPECT_EQ(read("Ask=" + of(254, '-') + "Name = n\n").errors, ignored("Ask"));
  EXPECT_EQ(read("Ask=" + of(254, '-') + "Name = n\n").record.name, "n");
  EXPECT_EQ(read("Ask=" + of(253, '-') + "Name = n\n").errors, ignored("Ask") + unknown("ame"));
  set_message(KEYWORD_NAME, "");
  EXPECT_EQ(read("Ask = n\n").errors, "morvane : Error in x.descr : Ask ignored !\n");
  EXPECT_EQ(read("Ask = n\n").record.name, "n");
}

TEST_F(Description, ARejectedEmptyKeywordIsSkippedWithItsLine) {
  const std::string report = "morvane : Error in x.descr :  ignored !\n";
  set_message(KEYWORD_ASK, "");
  EXPECT_EQ(read("= foo\nName = n\n").errors, report);
  EXPECT_EQ(read("= foo\nName = n\n").record.name, "n");
  EXPECT_EQ(read("=" + of(254, '-') + "Name = n\n").record.name, "n");
  EXPECT_EQ(read("=" + of(253, '-') + "Name = n\n").errors, report + unknown("ame"));
  set_message(KEYWORD_ASK, "Ask");
  set_message(KEYWORD_TARGET, "");
  EXPECT_EQ(read(repeat(14, "= t\n")).errors,
            "morvane : Error in x.descr :  ignored (array overflow)!\n");
  set_message(KEYWORD_TARGET, "Target");
  set_message(KEYWORD_NEEDS_TEXT, "");
  EXPECT_EQ(read("= t\n").errors,
            "morvane : Error in x.descr : array overflow, or  occured before NeedsCategory or "
            "Target!\n");
}

TEST_F(Description, EntriesActOnWhatWasOpenedLast) {
  const reading seen = read(TYPE + "NeedsType = z\nNeedsPatch = 3\n" + NEEDED +
                            "NeedsText = text\nTarget = u\nAsk = q\n");
  EXPECT_EQ(seen.errors, "");
  EXPECT_EQ(type(seen.record).release.patch, 0);
  EXPECT_EQ(type(seen.record, 1).type, "z");
  EXPECT_EQ(type(seen.record, 1).release.patch, 3);
  EXPECT_EQ(category(seen.record).text, "");
  EXPECT_EQ(category(seen.record, 1).text, "text");
  EXPECT_EQ(target(seen.record).ask, std::nullopt);
  EXPECT_EQ(target(seen.record, 1).target, "u");
  EXPECT_EQ(show(target(seen.record, 1).ask), "q");
  EXPECT_EQ(target(seen.record, 1).install, target_state::NOT_WANTED);
}

TEST_F(Description, AnEmptyValueOpensNothing) {
  EXPECT_EQ(fields_of(TARGET + "Target =\nAsk = q\n"), fields_of(TARGET + "Ask = q\n"));
  EXPECT_EQ(fields_of(CATEGORY + "NeedsCategory =\nNeedsText = t\n"),
            fields_of(CATEGORY + "NeedsText = t\n"));
  EXPECT_EQ(fields_of(TYPE + "NeedsType =\nNeedsPatch = 3\n"),
            fields_of(TYPE + "NeedsPatch = 3\n"));
  EXPECT_EQ(read("Target =\nNeedsCategory = c\n").errors, ignored("NeedsCategory"));
}

TEST_F(Description, TheThirteenthTargetIsCountedAndTheFourteenthReported) {
  const reading twelve = read(repeat(11, TARGET) + "Target = last\nAsk = q\n");
  EXPECT_EQ(twelve.errors, "");
  EXPECT_EQ(target(twelve.record, 11).target, "last");
  EXPECT_EQ(show(target(twelve.record, 11).ask), "q");
  const reading thirteen = read(repeat(12, TARGET) + "Target = more\n");
  EXPECT_EQ(thirteen.errors, "");
  EXPECT_EQ(target(thirteen.record, 11).target, "t");
  EXPECT_EQ(read(repeat(14, TARGET)).errors,
            "morvane : Error in x.descr : Target ignored (array overflow)!\n" + unknown(""));
}

TEST_F(Description, AnEleventhCategoryIsReadAndDropped) {
  const reading ten = read(TARGET + repeat(10, NEEDED) + "NeedsText = text\n");
  EXPECT_EQ(ten.errors, "");
  EXPECT_EQ(category(ten.record, 9).text, "text");
  const reading more = read(TARGET + repeat(12, NEEDED) + "NeedsText = text\n" + CATEGORY);
  EXPECT_EQ(more.errors, misplaced("NeedsText"));
  EXPECT_EQ(category(more.record, 9).text, "");
  EXPECT_EQ(category(more.record, 0, 1).category, "c");
}

TEST_F(Description, AnEleventhTypeIsReported) {
  EXPECT_EQ(category(read(CATEGORY).record).type_num, std::nullopt);
  EXPECT_EQ(category(read(TYPE).record).type_num, 0U);
  const std::string ten = CATEGORY + repeat(10, "NeedsType = y\n");
  EXPECT_EQ(read(ten).errors, "");
  const reading eleven = read(ten + "NeedsType = z\nNeedsPatch = 3\n");
  EXPECT_EQ(eleven.errors, misplaced("NeedsType"));
  EXPECT_EQ(type(eleven.record, 9).type, "y");
  EXPECT_EQ(type(eleven.record, 9).release.patch, 3);
  EXPECT_EQ(category(eleven.record).type_num, 0U);
}

TEST_F(Description, EntriesAndCommentsAreHandedOverWithTheirPlaces) {
  const scratch_directory here;
  write_file("x.descr", "# one\n  Name = X # kept out\nWrong = 1\n\nFullName = \"A b\"\n#two");
  std::string seen;
  product record;
  read_product(
      ".", "x", record, [](const description_fault&) {},
      [&seen](const description_entry& entry) {
        seen += std::to_string(entry.place.line) + ":" + std::to_string(entry.place.column) + " " +
                std::to_string(entry.keyword) + " '" + std::string(entry.value) + "'\n";
      });
  EXPECT_EQ(seen, "1:1 0 ' one'\n2:3 201 'X'\n5:1 202 'A b'\n6:1 0 'two'\n");
}

}  // namespace
}  // namespace morvane
