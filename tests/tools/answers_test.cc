#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "answers/answers_report.h"
#include "answers/earlier_files.h"
#include "answers/memory_effects.h"
#include "answers/player.h"
#include "answers/question_name.h"
#include "answers/rehearsal.h"
#include "answers/supplier.h"
#include "platform/shell.h"
#include "support/child.h"
#include "support/messages.h"

namespace morvane {
namespace {

TEST(Supplier, IsReadAsItIsWritten) {
  const supplier rows[] = {{"kelstone", ""},
                           {"a b", ""},
                           {"kelstone", "/opt/x y"},
                           {"", "/opt/x"},
                           {"", "/opt/x", true}};
  for (const supplier& row : rows) EXPECT_EQ(read_supplier(supplier_text(row)), row);
  EXPECT_EQ(supplier_text(rows[2]), "kelstone in /opt/x%20y");
  EXPECT_EQ(read_supplier("a  in  //opt//x/"), (supplier{"a", "/opt/x"}));
  for (const char* wrong : {"", "a b", "a in", "a in b", "a in /b c", "/a b", "a anyway"}) {
    EXPECT_EQ(read_supplier(wrong), std::nullopt) << wrong;
  }
}

TEST(Supplier, IsOfThisRunUnlessItLiesElsewhere) {
  product record;
  record.id = "a";
  record.path = "/opt/a";
  record.install = product_state::CONFIGURED;
  EXPECT_EQ(supplier_text(supplier_of(record)), "a");
  record.install = product_state::INSTALLED;
  EXPECT_EQ(supplier_text(supplier_of(record)), "a in /opt/a");
  record.id = "";
  EXPECT_EQ(supplier_text(supplier_of(record)), "/opt/a");
  record.install = product_state::ACCEPTED;
  EXPECT_EQ(supplier_text(supplier_of(record)), "/opt/a anyway");
}

TEST(QuestionName, TellsProductsAndPartsApart) {
  product record;
  record.id = "a b";
  record.install = product_state::SELECTED;
  const question asked = {
      .number = DIRECTORY_QUESTION, .product = &record, .part = "lib.x", .category = "STORE"};
  EXPECT_EQ(answer_name(asked), "supplier.lib%2Ex.STORE");
  EXPECT_EQ(identity_of(asked), "270 [a%20b] supplier.lib%2Ex.STORE");
  record.install = product_state::INSTALLED;
  EXPECT_EQ(section_title(record), "installed a%20b");
  EXPECT_EQ(answer_name({.number = LAST_QUESTION}), std::nullopt);
}

// A player of `text`, whose questions are asked as a run would.
struct played {
  explicit played(std::string_view text) : reading(read(text)), giving(reading, table) {
    use_test_messages();
    record.id = "a";
    record.install = product_state::SELECTED;
  }
  static answer_file read(std::string_view lines);

  std::string ask(message_number number, std::string_view proposal = "") {
    question asked = {.number = number, .product = &record, .proposal = proposal};
    return giving.reply(asked).value_or("(end)");
  }
  std::string findings() const { return findings_text("f", giving.findings()); }

  answer_file reading;
  product_table table;
  product record;
  player giving;
};

answer_file played::read(std::string_view lines) {
  answer_file file;
  file.sections = {{"", 0, {}}, {"a", 1, {}}};
  std::size_t line = 1;
  for (std::size_t start = 0; start < lines.size(); start = lines.find('\n', start) + 1) {
    const std::string_view each = lines.substr(start, lines.find('\n', start) - start);
    const std::size_t sign = each.find('=');
    file.sections[1].answers.push_back(
        {std::string(each.substr(0, sign)), std::string(each.substr(sign + 1)), ++line});
  }
  return file;
}

TEST(Player, GivesAnAnswerOnceAndTellsThatItWasRefused) {
  played run("owner=root\n");
  EXPECT_EQ(run.ask(OWNER_QUESTION, "bin"), "root");
  EXPECT_EQ(run.findings(), "");
  EXPECT_EQ(run.ask(OWNER_QUESTION, "bin"), "");  // the proposal, to go on
  EXPECT_EQ(run.findings(), "f:2: [a] owner: 'root' is refused by the program\n");
}

TEST(Player, EndsWhereNothingWillDo) {
  played run("type.=x\n");
  EXPECT_EQ(run.ask(TYPE_CHOICE), "(end)");
  EXPECT_EQ(run.ask(OWNER_QUESTION, "bin"), "(end)");
  EXPECT_FALSE(run.giving.finished());
}

TEST(Player, RefusesWhatTheDialogueWouldCutOrTakeForALetter) {
  played run("owner=" + std::string(LONGEST_ANSWER, 'o') +
             "\ngroup=" + std::string(LONGEST_ANSWER + 1, 'g') + "\n");
  EXPECT_EQ(run.ask(OWNER_QUESTION, "x").size(), LONGEST_ANSWER);
  EXPECT_EQ(run.ask(GROUP_QUESTION, "x"), "");
  EXPECT_NE(run.findings().find("is longer than the program reads"), std::string::npos);
  played quitting("owner=" + std::string(1, r[ANSWER_LETTERS][2]) + "\n");
  EXPECT_EQ(quitting.ask(OWNER_QUESTION, "x"), "");
  EXPECT_NE(quitting.findings().find("is the letter that quits"), std::string::npos);
}

TEST(Player, SaysWhatIsLeftOverAtTheEndAndNothingTwice) {
  played run("owner=root\nonwer=root\n");
  run.ask(OWNER_QUESTION);
  run.ask(GROUP_QUESTION, "bin");
  run.ask(ACCESS_QUESTION.number);
  EXPECT_EQ(run.ask(CHANGE_SETTINGS), "");  // perhaps another round has a question for it
  EXPECT_EQ(run.ask(CHANGE_SETTINGS), std::string(1, r[ANSWER_LETTERS][1]));
  run.ask(LAST_QUESTION);
  EXPECT_EQ(run.findings(),
            "f:1: [a] group: there is no answer; proposal: bin\n"
            "f:1: [a] access: there is no answer; proposal: yes\n"
            "f:3: [a] onwer: no question takes this answer\n");
}

TEST(Player, ComesByteByByte) {
  answer_source source = bytes_of([](const question& asked) {
    return asked.number == LAST_QUESTION ? std::nullopt : std::optional<std::string>("\xff");
  });
  EXPECT_EQ(source({.number = OWNER_QUESTION}), 255);
  EXPECT_EQ(source({.number = OWNER_QUESTION}), '\n');
  EXPECT_EQ(source({.number = LAST_QUESTION}), -1);
}

TEST(Memory, HoldsWhatWasMadeAndNothingElse) {
  const scratch_directory scratch;
  rehearsed_deeds deeds;
  const effects memory = effects_in_memory(deeds);
  const std::string made = scratch.path() + "/x/y";
  EXPECT_FALSE(memory.exists(made));
  EXPECT_TRUE(memory.make_directory(made));
  EXPECT_TRUE(memory.exists(made));
  EXPECT_TRUE(memory.may_create_in(made));
  EXPECT_EQ(memory.list_files(made, "*.descr"), file_names());
  EXPECT_EQ(deeds.directories, (std::vector<std::string>{scratch.path() + "/x", made}));
  EXPECT_FALSE(exists(made));

  write_file("file", "");
  EXPECT_FALSE(memory.make_directory(scratch.path() + "/file/x"));
  std::filesystem::create_symlink("nowhere", "link");
  EXPECT_FALSE(memory.make_directory(scratch.path() + "/link/x"));
  EXPECT_TRUE(memory.make_directory(scratch.path()));
}

// What both effects say of directories of all modes, and of what is not there.
std::string says(const effects& host, const std::string& above) {
  std::string said;
  for (const char* name : {"mine", "mine-closed", "other", "other-closed", "other-open", "unlisted",
                           "file", "missing", "other-closed/x", "other/x", "unlisted/x"}) {
    said += std::string(name) + (host.may_create_in(above + "/" + name) ? " yes " : " no ");
  }
  return said;
}

TEST(Memory, SaysOfDirectoriesWhatTheHostSays) {
  const scratch_directory scratch;
  constexpr uid_t NOBODY = 65534;
  const struct {
    const char* name;
    mode_t mode;
    bool mine;
  } rows[] = {{"mine", 0755, true},          {"mine-closed", 0000, true}, {"other", 0755, false},
              {"other-closed", 0700, false}, {"other-open", 0777, false}, {"unlisted", 0200, true}};
  for (const auto& row : rows) {
    ASSERT_EQ(mkdir(row.name, 0755), 0);
    if (row.mine && geteuid() == 0) {
      ASSERT_EQ(chown(row.name, NOBODY, NOBODY), 0);
    }
    ASSERT_EQ(chmod(row.name, row.mode), 0);
  }
  write_file("file", "");
  ASSERT_EQ(chmod(".", 0755), 0);
  const std::string above = scratch.path();
  for (const bool as_nobody : {false, true}) {
    const outcome seen = in_child("", [&]() -> std::string {
      if (as_nobody && geteuid() == 0 && setuid(NOBODY) != 0) return "cannot become nobody";
      rehearsed_deeds deeds;
      const std::string rehearsed = says(effects_in_memory(deeds), above);
      const std::string real = says(effects_on_host(), above);
      return rehearsed == real ? "" : rehearsed + "\n" + real;
    });
    EXPECT_EQ(seen.result, "");
    std::filesystem::remove("missing");
    std::filesystem::remove("other/x");
    std::filesystem::remove("unlisted/x");
    std::filesystem::remove("other-closed/x");
  }
  for (const auto& row : rows) chmod(row.name, 0755);
}

TEST(Memory, HidesAProbeThatWasRemovedAndKeepsWhatIsWritten) {
  const scratch_directory scratch;
  write_file("out", "earlier");
  rehearsed_deeds deeds;
  const effects memory = effects_in_memory(deeds);
  EXPECT_TRUE(memory.is_file("out"));
  memory.remove_probe("out");
  EXPECT_FALSE(memory.exists("out"));
  EXPECT_FALSE(memory.is_file("out"));
  EXPECT_EQ(memory.write_file("out", earlier_file::GOES, [] { return std::nullopt; }),
            write_outcome::NOT_WRITTEN);
  EXPECT_EQ(memory.write_file("out", earlier_file::GOES,
                              [] { return std::optional<std::string>("new"); }),
            write_outcome::WRITTEN);
  EXPECT_TRUE(memory.exists("out"));
  EXPECT_EQ(deeds.files["out"], "new");
  EXPECT_EQ(read_file("out"), "earlier");
  std::filesystem::create_directory("directory");
  EXPECT_EQ(memory.write_file("directory", earlier_file::STAYS,
                              [] { return std::optional<std::string>("new"); }),
            write_outcome::NOT_OPENED);
}

TEST(Memory, TriesAGroupWithoutTheProbe) {
  const scratch_directory scratch;
  rehearsed_deeds deeds;
  const effects memory = effects_in_memory(deeds);
  EXPECT_EQ(memory.try_group("probe", std::to_string(getegid())), group_trial::ALLOWED);
  EXPECT_EQ(memory.try_group("probe", "no such group"), group_trial::REFUSED);
  EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST(Memory, RefusesAGroupWhereTheProbeIsSomebodyElses) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser can make a file of somebody else";
  const scratch_directory scratch;
  write_file("probe", "");
  ASSERT_EQ(chmod("probe", 0666), 0);
  ASSERT_EQ(chmod(".", 0777), 0);
  const outcome seen = in_child("", []() -> std::string {
    constexpr uid_t NOBODY = 65534;
    if (setgid(NOBODY) != 0 || setuid(NOBODY) != 0) return "cannot become nobody";
    rehearsed_deeds deeds;
    const effects memory = effects_in_memory(deeds);
    const auto trial = [](const effects& host) {
      const std::string group = std::to_string(NOBODY);
      std::string said = std::to_string(static_cast<int>(host.try_group("probe", group)));
      host.remove_probe("probe");
      return said + std::to_string(static_cast<int>(host.try_group("probe", group)));
    };
    const std::string rehearsed = trial(memory);
    return rehearsed + " " + trial(effects_on_host());
  });
  EXPECT_EQ(seen.result, "12 12");
}

TEST(EarlierFiles, AreWhatTheyWere) {
  const scratch_directory scratch;
  write_file("changed", "one");
  chmod("changed", 0600);
  write_file("gone", "two");
  chmod("gone", 0640);
  write_file("behind", "three");
  std::filesystem::create_symlink("behind", "link");
  mkfifo("pipe", 0600);
  const auto earlier = remember_files({"changed", "gone", "new", "link", "pipe"});
  ASSERT_TRUE(earlier);

  write_file("changed", "longer than before");
  std::filesystem::remove("gone");
  write_file("new", "new");
  std::filesystem::remove("link");
  write_file("link", "no link");
  EXPECT_EQ(restore_files(*earlier), std::vector<std::string>());

  EXPECT_EQ(read_file("changed"), "one");
  EXPECT_EQ(read_file("gone"), "two");
  EXPECT_EQ(read_file("behind"), "three");
  EXPECT_TRUE(std::filesystem::is_symlink("link"));
  EXPECT_TRUE(std::filesystem::is_fifo("pipe"));
  EXPECT_FALSE(exists("new"));
  struct stat status;
  ASSERT_EQ(stat("gone", &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST(EarlierFiles, ThatCannotBePutBackAreNamed) {
  const scratch_directory scratch;
  const auto earlier = remember_files({"new"});
  std::filesystem::create_directories("new/inside");
  EXPECT_EQ(restore_files(*earlier), std::vector<std::string>{"new"});
}

TEST(Rehearsal, ComesBackFromTheChildAsItWas) {
  rehearsal seen;
  seen.findings = {{answer_trouble::REFUSED, 7, "a", "owner", "text", "proposal"}};
  seen.questions = {{"30 [a] owner", "root"}, {"100", ""}};
  seen.deeds.directories = {"/opt", "/opt/a"};
  seen.deeds.files = {{"a.dat", "content\nof two lines"}, {"install.mk", std::nullopt}};
  seen.plan = {
      {"a", "1.0", "/opt/a", "o", "g", true, false, {{"part", {{"STORE", "base"}}}, {"q", {}}}}};
  seen.results = "results\n";
  const rehearsal back = unpack(pack(seen));
  EXPECT_EQ(pack(back), pack(seen));
  EXPECT_EQ(back.questions, seen.questions);
  EXPECT_EQ(back.deeds.files, seen.deeds.files);
  EXPECT_EQ(back.deeds.written, seen.deeds.written);
  EXPECT_EQ(back.findings[0].proposal, "proposal");
  EXPECT_EQ(back.findings[0].section, "a");
  EXPECT_EQ(back.plan[0].group, "g");
  EXPECT_EQ(back.plan[0].parts[0].needs[0].supplier, "base");
  EXPECT_TRUE(back.plan[0].other_access);
  EXPECT_FALSE(back.plan[0].again);
}

TEST(Rehearsal, ThatNeverCameBackIsEmpty) {
  const rehearsal back = unpack("");
  EXPECT_TRUE(back.is_good());
  EXPECT_TRUE(back.questions.empty());
}

TEST(AnswersReport, LetsNothingThroughThatATerminalWouldFollow) {
  EXPECT_EQ(findings_text("f\x1b", {{.trouble = answer_trouble::ENDED, .text = "a\x1b[2Jb"}}),
            "f?: a?[2Jb\n");
}

}  // namespace
}  // namespace morvane
