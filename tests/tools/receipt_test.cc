#include "receipt/receipt.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "receipt/receipt_reader.h"
#include "receipt/receipt_store.h"
#include "receipt/receipt_writer.h"
#include "support/child.h"
#include "tree/digest.h"

namespace morvane {
namespace {

receipt_entry file_entry(const std::string& path, std::string_view content) {
  receipt_entry entry;
  entry.path = path;
  entry.kind = file_kind::FILE;
  entry.mode = 0644;
  entry.before = before::NOTHING;
  entry.size = content.size();
  entry.modified = -5;
  entry.digest = digest_of(content);
  return entry;
}

receipt_entry directory_entry(const std::string& path) {
  receipt_entry entry;
  entry.path = path;
  entry.kind = file_kind::DIRECTORY;
  entry.mode = 0755;
  entry.before = before::EMPTY;
  return entry;
}

receipt sample() {
  receipt made;
  made.id = "app";
  made.name = "The % app";
  made.version = "1.2, patch 1";
  made.directory = "/opt/app";
  made.owner = "lena";
  made.group = "readers";
  made.access = false;
  made.installed = 1'795'296'605'000'000'123;
  made.configured = 1'795'296'606'000'000'000;
  made.archive = digest_of("archive");
  made.parts = {"program"};
  made.originals = {"base"};
  made.needs = {{"ALMANAC", "/opt/almanac", "Fennick almanac", "3.1"}};
  made.entries = {directory_entry("."), directory_entry("bin"), file_entry("bin/a b\n%", "abc")};
  receipt_entry link;
  link.path = "link";
  link.kind = file_kind::LINK;
  link.mode = 0777;
  link.origin = entry_origin::PART;
  link.target = "a b";
  made.entries.push_back(link);
  return made;
}

constexpr const char* SAMPLE_TEXT =
    "morvane receipt 1\n"
    "product = app\n"
    "name = The %25 app\n"
    "version = 1.2, patch 1\n"
    "directory = /opt/app\n"
    "owner = lena\n"
    "group = readers\n"
    "access = no\n"
    "made = with the installation\n"
    "complete = yes\n"
    "installed = 1795296605.000000123\n"
    "configured = 1795296606.000000000\n"
    "archive = 9b1fcd23b85a14a85f4f0e25e3f4a3e0f3e24db1ebd2d9aed3aa5e7d2cf6d2e9\n"
    "description =\n"
    "part = program\n"
    "patch-of = base\n"
    "need = ALMANAC\n"
    "need-directory = /opt/almanac\n"
    "need-name = Fennick almanac\n"
    "need-version = 3.1\n"
    "entries = 4\n"
    "directory 755 0 0 empty archive .\n"
    "directory 755 0 0 empty archive bin\n"
    "file 644 0 0 new archive bin/a%20b%0A%25 3 -5 "
    "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad\n"
    "link 777 0 0 ? part link a%20b\n";

std::string fault_of(std::string_view text) {
  const auto reading = read_receipt(text);
  const auto* fault = std::get_if<receipt_fault>(&reading);
  return fault == nullptr ? "none" : std::to_string(fault->line) + ": " + fault->text;
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

std::string sample_text() {
  return replaced(SAMPLE_TEXT, "9b1fcd23b85a14a85f4f0e25e3f4a3e0f3e24db1ebd2d9aed3aa5e7d2cf6d2e9",
                  digest_of("archive"));
}

TEST(Receipt, IsWrittenAndReadAgain) {
  EXPECT_EQ(receipt_text(sample()), sample_text());
  const auto reading = read_receipt(sample_text());
  ASSERT_TRUE(std::holds_alternative<receipt>(reading)) << fault_of(sample_text());
  EXPECT_EQ(std::get<receipt>(reading), sample());
}

TEST(Receipt, TellsThatTheProductIsNotComplete) {
  receipt made = sample();
  made.complete = false;
  const std::string text = replaced(sample_text(), "complete = yes", "complete = no");
  EXPECT_EQ(receipt_text(made), text);
  EXPECT_EQ(std::get<receipt>(read_receipt(text)), made);
}

TEST(Receipt, ThatIsNoneIsAFaultWithItsLine) {
  struct row {
    const char* from;
    const char* to;
    const char* fault;
  };
  const std::vector<row> rows = {
      {"receipt 1", "receipt 2", "1: the first line is not 'morvane receipt 1'"},
      {"product = app", "product =", "2: not an identifier"},
      {"product = app", "product = a/b", "2: not an identifier"},
      {"product = app", "procuct = app", "2: not 'product = ...'"},
      {"%25", "%", "3: '%' is not followed by two hexadecimal digits"},
      {"%25", "%00", "3: '%' is not followed by two hexadecimal digits"},
      {"/opt/app", "opt/app", "5: not an absolute directory in its normal form"},
      {"/opt/app", "/opt/../app", "5: not an absolute directory in its normal form"},
      {"/opt/app", "/opt/app/", "5: not an absolute directory in its normal form"},
      {"access = no", "access = maybe", "8: neither 'yes' nor 'no'"},
      {"complete = yes", "complete =", "10: neither 'yes' nor 'no'"},
      {"605.000000123", "605.123", "11: not a time in seconds with nine digits behind the point"},
      {"605.000000123", "60500000000000000000.000000123",
       "11: not a time in seconds with nine digits behind the point"},
      {"description =", "description = ab", "14: not a digest"},
      {"part = program", "parts = program", "15: not 'entries = ...'"},
      {"entries = 4", "entries = x", "21: not a number of entries"},
      {"entries = 4", "entries = 3", "25: there are more lines than entries"},
      {"entries = 4", "entries = 5", "26: the file ends too early"},
      {"entries = 4", "entries = 18446744073709551615", "26: the file ends too early"},
      {"directory 755", "door 755", "22: not a kind of file"},
      {"directory 755", "directory 789", "22: not a mode"},
      {"directory 755", "directory 17777", "22: not a mode"},
      {"directory 755", "directory 0755", "22: not written as a receipt is"},
      {"755 0 0", "755 x 0", "22: not the number of an owner"},
      {"755 0 0", "755 0 -1", "22: not the number of a group"},
      {"empty archive .", "full archive .", "22: not what lay there before"},
      {"empty archive .", "empty cellar .", "22: not an origin"},
      {"archive bin\n", "archive ../bin\n",
       "23: not a path below the directory in its normal form"},
      {"archive bin\n", "archive /bin\n", "23: not a path below the directory in its normal form"},
      {"archive bin\n", "archive bin \n", "23: not written as a receipt is"},
      {"archive bin\n", "archive bin more\n", "23: more words than an entry has"},
      {"archive bin\n", "archive .\n", "23: the path does not stand behind the one before it"},
      {" 3 -5 ", " x -5 ", "24: not a size"},
      {" 3 -5 ", " 3 5.5 ", "24: not a time"},
      {"15ad\n", "15aD\n", "24: not a digest"},
      {"link a%20b", "link", "25: not a target of a link"},
      {"link a%20b\n", "link a%20b", "25: the line does not end: the file was cut off"}};
  for (const row& each : rows) {
    EXPECT_EQ(fault_of(replaced(sample_text(), each.from, each.to)), each.fault) << each.to;
  }
  EXPECT_EQ(fault_of(""), "1: the file ends too early");
}

TEST(Receipt, ThatIsCutOffAnywhereIsAFault) {
  const std::string text = sample_text();
  for (std::size_t size = 0; size < text.size(); ++size) {
    EXPECT_NE(fault_of(text.substr(0, size)), "none") << size;
  }
}

TEST(Receipt, FindsItsEntries) {
  const receipt made = sample();
  EXPECT_EQ(find_entry(made, "bin"), &made.entries[1]);
  EXPECT_EQ(find_entry(made, "bi"), nullptr);
  EXPECT_EQ(absolute_path(made, made.entries[0]), "/opt/app");
  EXPECT_EQ(absolute_path(made, made.entries[1]), "/opt/app/bin");
  EXPECT_EQ(time_of(made, made.entries[1]), made.installed);
  EXPECT_EQ(time_of(made, made.entries[3]), made.configured);
}

TEST(Receipt, CarriesOverWhatAnEarlierInstallationLeft) {
  receipt now = sample();
  now.entries = {directory_entry("bin"), file_entry("bin/new", "")};
  now.entries[0].before = before::THERE;
  receipt earlier = sample();
  earlier.entries = {directory_entry("bin"), file_entry("bin/old", "")};
  carry_over(now, earlier);
  ASSERT_EQ(now.entries.size(), 3U);
  EXPECT_EQ(now.entries[0].before, before::EMPTY);
  EXPECT_EQ(now.entries[1].path, "bin/new");
  EXPECT_EQ(now.entries[2].path, "bin/old");
}

class ReceiptStore : public testing::Test {
 protected:
  ReceiptStore() {
    std::filesystem::create_directories("app/install");
    kept_.directory = scratch_.path() + "/app";
  }

  receipt_store stored() const {
    receipt_store store;
    EXPECT_TRUE(add_registered(store, registry_));
    EXPECT_TRUE(add_beside(store, kept_.directory));
    return store;
  }

  scratch_directory scratch_;
  std::string registry_ = scratch_.path() + "/var/registry";
  receipt kept_ = sample();
};

TEST_F(ReceiptStore, KeepsAReceiptInBothPlaces) {
  const receipt_places places = keep_receipt(kept_, registry_);
  EXPECT_EQ(places.beside, 0);
  EXPECT_EQ(places.registry, 0);
  const receipt_store store = stored();
  ASSERT_EQ(store.receipts.size(), 1U);
  EXPECT_EQ(store.receipts[0].content, kept_);
  EXPECT_TRUE(store.receipts[0].trusted);
  EXPECT_TRUE(store.receipts[0].registered);
  EXPECT_TRUE(store.receipts[0].beside);
  EXPECT_TRUE(store.faults.empty());
}

TEST_F(ReceiptStore, ShowsTheReceiptOfAClosedProductToItsGroupAlone) {
  keep_receipt(kept_, registry_);
  struct stat status;
  ASSERT_EQ(stat("app/install/app.receipt", &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  kept_.access = true;
  keep_receipt(kept_, registry_);
  ASSERT_EQ(stat("app/install/app.receipt", &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST_F(ReceiptStore, NotesTheDirectoryThatItMakes) {
  std::filesystem::remove("app/install");
  keep_receipt(kept_, registry_);
  const receipt_entry* made = find_entry(kept_, "install");
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->before, before::NOTHING);
  EXPECT_EQ(made->kind, file_kind::DIRECTORY);
}

TEST_F(ReceiptStore, FollowsNoLinkBelowTheProduct) {
  std::filesystem::remove("app/install");
  std::filesystem::create_directory("elsewhere");
  std::filesystem::create_directory_symlink("../elsewhere", "app/install");
  EXPECT_NE(keep_receipt(kept_, registry_).beside, 0);
  EXPECT_TRUE(std::filesystem::is_empty("elsewhere"));

  std::filesystem::remove("app/install");
  std::filesystem::create_directory("app/install");
  write_file("outside", "kept");
  std::filesystem::create_symlink("../../outside", "app/install/app.receipt");
  EXPECT_NE(keep_receipt(kept_, registry_).beside, 0);
  EXPECT_EQ(read_file("outside"), "kept");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("app/install"), {}), 1);
}

TEST_F(ReceiptStore, DropsAReceiptTwice) {
  keep_receipt(kept_, registry_);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(drop_beside(kept_), 0);
    EXPECT_EQ(drop_registered(kept_, registry_), 0);
  }
  EXPECT_TRUE(stored().receipts.empty());
}

TEST_F(ReceiptStore, TakesTheLaterOfTwoTrustedOnes) {
  keep_receipt(kept_, registry_);
  receipt later = kept_;
  later.configured += 1;
  write_file("app/install/app.receipt", receipt_text(later));
  ASSERT_EQ(chmod("app/install/app.receipt", 0644), 0);
  receipt_store store = stored();
  ASSERT_EQ(store.receipts.size(), 1U);
  EXPECT_EQ(store.receipts[0].content, later);

  ASSERT_EQ(chmod("app/install/app.receipt", 0666), 0);
  store = stored();
  ASSERT_EQ(store.receipts.size(), 1U);
  EXPECT_EQ(store.receipts[0].content, kept_);
  EXPECT_TRUE(store.receipts[0].trusted);
}

TEST_F(ReceiptStore, RefusesAReceiptOfAnotherDirectoryOrProduct) {
  keep_receipt(kept_, registry_);
  std::filesystem::copy("app", "copy", std::filesystem::copy_options::recursive);
  receipt_store store;
  EXPECT_TRUE(add_beside(store, scratch_.path() + "/copy"));
  EXPECT_TRUE(store.receipts.empty());
  ASSERT_EQ(store.faults.size(), 1U);
  EXPECT_EQ(store.faults[0], scratch_.path() +
                                 "/copy/install/app.receipt: it tells of another "
                                 "product or directory");
}

TEST_F(ReceiptStore, TellsWhatIsWrongWithAReceipt) {
  write_file("app/install/app.receipt", "morvane receipt 1\nproduct = a/b\n");
  const receipt_store store = stored();
  ASSERT_EQ(store.faults.size(), 1U);
  EXPECT_EQ(store.faults[0], kept_.directory + "/install/app.receipt: line 2: not an identifier");
}

TEST_F(ReceiptStore, RefusesARegistryThatOthersCanWrite) {
  std::filesystem::create_directories(registry_);
  ASSERT_EQ(chmod(registry_.c_str(), 0777), 0);
  EXPECT_EQ(keep_receipt(kept_, registry_).registry, EPERM);
  receipt_store store;
  EXPECT_FALSE(add_registered(store, registry_));
  EXPECT_EQ(errno, EPERM);
}

}  // namespace
}  // namespace morvane
