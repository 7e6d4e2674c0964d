#include "archive/archive_reader.h"

#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/child.h"

namespace morvane {
namespace {

// Archives that a test writes as "x.tar" in a directory of its own.
class ArchiveReader : public testing::Test {
 protected:
  void SetUp() override {
    archive_write_set_format_ustar(writer_);
    archive_write_set_bytes_in_last_block(writer_, 512);
    archive_write_open_filename(writer_, "x.tar");
  }

  void add(unsigned type, const std::string& name, const std::string& content = "",
           unsigned mode = 0644) {
    archive_entry* entry = archive_entry_new();
    archive_entry_set_filetype(entry, type);
    archive_entry_set_pathname(entry, name.c_str());
    archive_entry_set_perm(entry, static_cast<mode_t>(mode));
    if (type == AE_IFLNK) archive_entry_set_symlink(entry, content.c_str());
    if (type == AE_IFREG) archive_entry_set_size(entry, static_cast<la_int64_t>(content.size()));
    EXPECT_EQ(archive_write_header(writer_, entry), ARCHIVE_OK);
    if (type == AE_IFREG) archive_write_data(writer_, content.data(), content.size());
    archive_entry_free(entry);
  }

  archive_content read(std::string_view wanted = "install/Makefile") {
    if (writer_ != nullptr) archive_write_free(writer_);
    writer_ = nullptr;
    return read_archive("x.tar", wanted);
  }

  ~ArchiveReader() override {
    if (writer_ != nullptr) archive_write_free(writer_);
  }

 private:
  scratch_directory here_;
  archive* writer_ = archive_write_new();
};

TEST_F(ArchiveReader, NamesTheMembersInTheirOrder) {
  add(AE_IFDIR, "./");
  add(AE_IFREG, "./bin/run", "content", 04755);
  add(AE_IFLNK, "lib", "bin");
  add(AE_IFIFO, "pipe");
  const archive_content content = read();
  EXPECT_FALSE(content.fault);
  EXPECT_FALSE(content.wanted);
  ASSERT_EQ(content.members.size(), 4U);
  EXPECT_EQ(content.members[0].name, ".");
  EXPECT_EQ(content.members[0].kind, member_kind::DIRECTORY);
  EXPECT_EQ(content.members[1].name, "./bin/run");
  EXPECT_EQ(content.members[1].kind, member_kind::FILE);
  EXPECT_EQ(content.members[1].mode, 04755U);
  EXPECT_EQ(content.members[2].target, "bin");
  EXPECT_EQ(content.members[2].kind, member_kind::LINK);
  EXPECT_EQ(content.members[3].kind, member_kind::OTHER);
}

TEST_F(ArchiveReader, KeepsTheContentOfTheWantedFile) {
  add(AE_IFREG, "install/Makefile", "first:\n");
  add(AE_IFREG, "./install//Makefile", "second:\n");
  add(AE_IFREG, "other", "other");
  EXPECT_EQ(read().wanted, "second:\n");
}

TEST_F(ArchiveReader, KeepsNoMoreThanItsMostOfALongFile) {
  add(AE_IFREG, "install/Makefile", std::string(MOST_CONTENT + 10000, 'x'));
  add(AE_IFREG, "last", "last");
  const archive_content content = read();
  EXPECT_FALSE(content.fault);
  EXPECT_EQ(content.wanted->size(), MOST_CONTENT);
  EXPECT_EQ(content.members.back().name, "last");
}

TEST_F(ArchiveReader, SaysWhatIsNoArchive) {
  EXPECT_EQ(read_archive("missing.tar", "").fault, archive_fault::CANNOT_BE_OPENED);
  EXPECT_EQ(read_archive(".", "").fault, archive_fault::CANNOT_BE_OPENED);
  write_file("empty.tar", "");
  EXPECT_EQ(read_archive("empty.tar", "").fault, archive_fault::EMPTY_FILE);
  write_file("text.tar", std::string(2000, 't'));
  EXPECT_EQ(read_archive("text.tar", "").fault, archive_fault::NOT_READABLE);
  write_file("gzip.tar", "\x1f\x8b and more");
  const archive_content compressed = read_archive("gzip.tar", "");
  EXPECT_EQ(compressed.fault, archive_fault::COMPRESSED);
  EXPECT_EQ(compressed.reason, "gzip");
}

TEST_F(ArchiveReader, AnArchiveOfNothingHasNoMembersAndNoFault) {
  const archive_content content = read();
  EXPECT_FALSE(content.fault);
  EXPECT_TRUE(content.members.empty());
}

TEST_F(ArchiveReader, NoticesWhereAnArchiveIsCutOff) {
  add(AE_IFREG, "first", std::string(100, '1'));
  add(AE_IFREG, "second", std::string(5000, '2'));
  EXPECT_FALSE(read().fault);
  // Two blocks of the first member, and the head of the second, of which the content is missing.
  std::filesystem::resize_file("x.tar", 3 * 512);
  EXPECT_EQ(read().fault, archive_fault::NOT_READABLE);
  // Whole members, and no end.
  std::filesystem::resize_file("x.tar", 2 * 512);
  EXPECT_TRUE(read().fault == archive_fault::NO_END || read().fault == archive_fault::NOT_READABLE);
  EXPECT_EQ(read().members.size(), 1U);
}

TEST_F(ArchiveReader, TakesADamagedHeadForTheEnd) {
  add(AE_IFREG, "first");
  add(AE_IFREG, "second");
  add(AE_IFREG, "third");
  EXPECT_FALSE(read().fault);
  std::fstream("x.tar", std::ios::in | std::ios::out).seekp(512) << std::string(512, 'x');
  const archive_content content = read();
  EXPECT_EQ(content.fault, archive_fault::NOT_READABLE);
  ASSERT_EQ(content.members.size(), 1U);
  EXPECT_EQ(content.members[0].name, "first");
}

TEST(PartsOfName, AreWhatStandsBetweenSlashesButForFullStops) {
  using parts = std::vector<std::string_view>;
  EXPECT_EQ(parts_of_name("./bin//run/"), (parts{"bin", "run"}));
  EXPECT_EQ(parts_of_name("."), parts{});
  EXPECT_EQ(parts_of_name(""), parts{});
  EXPECT_EQ(parts_of_name("/../x"), (parts{"..", "x"}));
}

}  // namespace
}  // namespace morvane
