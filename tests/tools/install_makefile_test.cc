#include "install_makefile/install_makefile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "output/makefile_text.h"
#include "support/child.h"
#include "version/version.h"

namespace morvane {
namespace {

const std::string HEAD = "# generated\n# by somebody\n#\n#" + std::string(SCCSid) + "\n\n";
constexpr std::size_t LINES_OF_HEAD = 5;

// Returns the line that is refused, 0 where none is.
std::size_t refused_line(const std::string& text) {
  const auto read = read_install_makefile(text);
  return std::holds_alternative<std::size_t>(read) ? std::get<std::size_t>(read) : 0;
}

install_makefile reading(const std::string& text) {
  const auto read = read_install_makefile(text);
  if (const auto* line = std::get_if<std::size_t>(&read)) {
    ADD_FAILURE() << "line " << *line << " is refused";
    return {};
  }
  return std::get<install_makefile>(read);
}

std::vector<std::string> in_lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

// A new product that the superuser hands on, closed, with everything that can be said of it.
product_facts full_facts() {
  product_facts facts;
  facts.id = "app";
  facts.name = "App";
  facts.shown_name = "The App";
  facts.path = "/opt/app";
  facts.owner = "bin";
  facts.group = "users";
  facts.is_new = facts.described = facts.closed = facts.superuser = true;
  facts.targets = {"program", "manual"};
  facts.old_owner = "root";
  facts.old_group = "wheel";
  facts.files = files_to_copy(facts);
  return facts;
}

product_facts configured_again() {
  product_facts facts = full_facts();
  facts.id = "again";
  facts.is_new = facts.closed = false;
  facts.old_owner = facts.old_group = std::nullopt;
  facts.files = files_to_copy(facts);
  return facts;
}

TEST(InstallMakefile, SaysWhatItWasComposedFrom) {
  const std::vector<product_facts> products = {full_facts(), configured_again()};
  const install_makefile read = reading(HEAD + makefile_text("/dist", products));
  EXPECT_EQ(read.directory, "/dist");
  EXPECT_EQ(read.products, products);
}

TEST(InstallMakefile, MayHaveNoProducts) {
  EXPECT_TRUE(reading(HEAD + makefile_text("/dist", {})).products.empty());
}

class random_facts {
 public:
  explicit random_facts(unsigned seed) : random_(seed) {}

  product_facts next() {
    product_facts facts;
    facts.id = word();
    facts.shown_name = word() + " " + word();
    facts.path = "/" + word() + "/" + word();
    facts.group = word();
    facts.is_new = maybe();
    facts.described = maybe();
    facts.closed = maybe();
    facts.superuser = maybe();
    facts.link_option = facts.is_new && maybe();
    if (facts.superuser) facts.owner = word();
    for (int targets = number(4); targets > 0; --targets) facts.targets.push_back(word());
    if (!facts.targets.empty()) facts.name = word();
    if (facts.is_new && facts.superuser && maybe()) facts.old_owner = word();
    if (facts.is_new && maybe()) facts.old_group = word();
    for (const std::string& file : files_to_copy(facts)) {
      if (maybe()) facts.files.push_back(file);
    }
    return facts;
  }

 private:
  int number(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
  bool maybe() { return number(2) == 0; }

  // The words come up again and again, so that names of rules coincide.
  std::string word() {
    static const std::vector<std::string> words = {"a",   "b",     "a-b",  "make", "owner-old",
                                                   "new", "x.tar", "root", "{id}", "tar",
                                                   "a-a", "inst",  "0",    "path", "message"};
    return words[random_() % words.size()];
  }

  std::mt19937 random_;
};

TEST(InstallMakefile, OfAnyProductsSaysWhatItWasComposedFrom) {
  for (unsigned seed = 0; seed < 500; ++seed) {
    random_facts any(seed);
    const std::vector<product_facts> products = {any.next(), any.next(), any.next()};
    const install_makefile read = reading(HEAD + makefile_text("/dist", products));
    ASSERT_TRUE(read.products == products) << seed << "\n" << makefile_text("/dist", products);
  }
}

TEST(InstallMakefile, OfEachGoldenRunIsRead) {
  int count = 0;
  for (const auto& file : std::filesystem::recursive_directory_iterator(GOLDEN_RUNS)) {
    if (file.path().filename() != "install.mk") continue;
    if (file.path().string().find("/left/") == std::string::npos) continue;  // made up
    SCOPED_TRACE(file.path());
    ++count;
    const std::string text = read_file(file.path());
    if (file.path().string().find("/messages-file-masked/") != std::string::npos) {
      EXPECT_EQ(refused_line(text), 7U);  // the identification is no comment: make refuses it, too
      continue;
    }
    const install_makefile read = reading(text);
    EXPECT_TRUE(text.ends_with(makefile_text(read.directory, read.products)));
  }
  EXPECT_GT(count, 30);
}

// A line that looks the same may be meant where several are alike: the first behind them differs.
std::size_t first_difference(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  std::size_t line = 0;
  while (line < std::min(a.size(), b.size()) && a[line] == b[line]) ++line;
  return line + 1;
}

class EditedInstallMakefile : public testing::Test {
 protected:
  void expect_refused(const std::vector<std::string>& edited) const {
    const std::size_t line = first_difference(lines_, edited);
    // It stands in one line alone, so that any other is as good.
    if (line <= edited.size() && edited[line - 1] == "TAR_PATH\t= /distx") return;
    EXPECT_EQ(refused_line(joined(edited)), line);
  }

  const std::vector<std::string> lines_ =
      in_lines(HEAD + makefile_text("/dist", {full_facts(), configured_again()}));
};

TEST_F(EditedInstallMakefile, IsRefusedAtALineThatWasChanged) {
  for (std::size_t line = 3; line < lines_.size(); ++line) {
    SCOPED_TRACE(lines_[line]);
    for (const std::string& other :
         {lines_[line] + "x", "x" + lines_[line], std::string("all: x")}) {
      std::vector<std::string> edited = lines_;
      edited[line] = other;
      expect_refused(edited);
    }
  }
}

TEST_F(EditedInstallMakefile, IsRefusedAtALineThatWasTakenOut) {
  for (std::size_t line = LINES_OF_HEAD - 1; line < lines_.size(); ++line) {
    SCOPED_TRACE(lines_[line]);
    std::vector<std::string> edited = lines_;
    edited.erase(edited.begin() + static_cast<std::ptrdiff_t>(line));
    expect_refused(edited);
  }
}

TEST_F(EditedInstallMakefile, IsRefusedAtALineThatIsThereTwice) {
  for (std::size_t line = LINES_OF_HEAD - 1; line < lines_.size(); ++line) {
    SCOPED_TRACE(lines_[line]);
    std::vector<std::string> edited = lines_;
    edited.insert(edited.begin() + static_cast<std::ptrdiff_t>(line), lines_[line]);
    expect_refused(edited);
  }
}

TEST_F(EditedInstallMakefile, IsRefusedWhereItsHeadIsNone) {
  const std::string rest = joined({lines_.begin() + LINES_OF_HEAD, lines_.end()});
  EXPECT_EQ(refused_line(""), 1U);
  EXPECT_EQ(refused_line("\n"), 2U);
  EXPECT_EQ(refused_line("all: ; rm -rf x\n" + HEAD + rest), 1U);
  EXPECT_EQ(refused_line("# a\nall: ; rm -rf x\n" + HEAD + rest), 2U);
  EXPECT_EQ(refused_line(rest), 4U);
  EXPECT_EQ(refused_line("# of a text\n# over more lines\n" + HEAD + rest), 0U);
}

TEST_F(EditedInstallMakefile, IsRefusedAtItsEnd) {
  const std::string text = joined(lines_);
  EXPECT_EQ(refused_line(text + "x:\n"), lines_.size() + 1);
  EXPECT_EQ(refused_line(text.substr(0, text.size() - 1)), lines_.size());
}

}  // namespace
}  // namespace morvane
