#include "platform/input_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

#include "support/child.h"

namespace morvane {
namespace {

constexpr std::size_t NO_LIMIT = std::numeric_limits<std::size_t>::max();

std::string of(std::size_t count, char c) {
  return std::string(count, c);
}

std::string rest_of(input_file& file) {
  std::string rest;
  for (int c; (c = file.get()) != input_file::END;) rest += static_cast<char>(c);
  return rest;
}

TEST(InputFile, ANamedPipeReadsAsAnEmptyFile) {
  const scratch_directory here;
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  input_file file("pipe");
  EXPECT_TRUE(file.is_open());
  EXPECT_EQ(file.get(), input_file::END);
}

TEST(InputFile, OfAMissingFileIsNotOpen) {
  EXPECT_FALSE(input_file("/nonexistent/file").is_open());
}

TEST(InputFile, GivesEveryByteAndThenTheEnd) {
  const scratch_directory here;
  write_file("bytes", std::string_view("a\0\377", 3));
  input_file file("bytes");
  ASSERT_TRUE(file.is_open());
  EXPECT_EQ(file.peek(), 'a');
  EXPECT_EQ(file.get(), 'a');
  EXPECT_EQ(file.get(), 0);
  EXPECT_EQ(file.get(), 255);
  EXPECT_EQ(file.peek(), input_file::END);
  EXPECT_EQ(file.get(), input_file::END);
  EXPECT_EQ(file.get(), input_file::END);
}

TEST(InputFile, ReadsAWordUpToWhiteSpaceOrTheEnd) {
  const scratch_directory here;
  write_file("words", "one\ttwo\377\n\nlast");
  input_file file("words");
  std::string word = ">";
  file.read_word(word);
  EXPECT_EQ(word, ">one");
  file.read_word(word);
  EXPECT_EQ(word, ">one");
  EXPECT_EQ(file.get(), '\t');
  file.read_word(word);
  EXPECT_EQ(word, ">onetwo\377");
  EXPECT_EQ(file.get(), '\n');
  EXPECT_EQ(file.get(), '\n');
  file.read_word(word);
  EXPECT_EQ(word, ">onetwo\377last");
  file.read_word(word);
  EXPECT_EQ(word, ">onetwo\377last");
}

TEST(InputFile, ReadsAndSkipsARunOfBytesAcrossBlocks) {
  constexpr std::size_t BLOCK = 65536;
  const auto is_x = [](int c) { return c == 'x'; };
  const scratch_directory here;
  write_file("runs", of(BLOCK + 1, 'x') + "\377" + of(2 * BLOCK, 'x'));
  input_file file("runs");
  std::string run = ">";
  file.read_while(is_x, run);
  EXPECT_TRUE(run == ">" + of(BLOCK + 1, 'x'));
  file.read_while(is_x, run);
  file.skip_while(is_x);
  EXPECT_EQ(file.get(), 255);
  EXPECT_TRUE(run == ">" + of(BLOCK + 1, 'x'));
  file.skip_while([](int c) { return c == 'y'; });
  EXPECT_EQ(file.peek(), 'x');
  file.skip_while(is_x);
  EXPECT_EQ(file.place().column, 3 * BLOCK + 3);
  EXPECT_EQ(file.peek(), input_file::END);
  file.read_while(is_x, run);
  file.skip_while(is_x);
  EXPECT_EQ(file.get(), input_file::END);
}

TEST(InputFile, TellsHowMuchIsToComeOfTheSizeThatItHad) {
  const scratch_directory here;
  write_file("bytes", "1234");
  input_file file("bytes");
  EXPECT_EQ(file.to_come(), 4u);
  file.get();
  EXPECT_EQ(file.to_come(), 3u);
  write_file("bytes", "1234567890");
  EXPECT_EQ(rest_of(file), "234567890");
  EXPECT_EQ(file.to_come(), 0u);
}

TEST(InputFile, OfNoSizeTellsNothingOfWhatIsToCome) {
  const scratch_directory here;
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  EXPECT_EQ(input_file("pipe").to_come(), 0u);
  EXPECT_EQ(input_file(".").to_come(), 0u);
  EXPECT_EQ(input_file("missing").to_come(), 0u);
}

TEST(InputFile, HoldsATextAsAFileDoes) {
  input_file file = input_file::holding("a\nb");
  EXPECT_EQ(file.to_come(), 3U);
  EXPECT_EQ(rest_of(file), "a\nb");
  EXPECT_EQ(file.place().line, 2U);
  EXPECT_EQ(file.error(), 0);
  input_file empty = input_file::holding("");
  EXPECT_EQ(empty.get(), input_file::END);
}

TEST(InputFile, ReadsALineUpToItsLimit) {
  const scratch_directory here;
  write_file("lines", "abc\ndefgh\nlast");
  input_file file("lines");
  std::string line = ">";
  file.read_line(4, line);
  EXPECT_EQ(line, ">abc\n");
  file.read_line(2, line);
  EXPECT_EQ(line, ">abc\nde");
  file.read_line(0, line);
  file.skip_line(2);
  EXPECT_EQ(rest_of(file), "h\nlast");
}

TEST(InputFile, ReadsOnFromBlockToBlock) {
  const scratch_directory here;
  const std::string content = of(65530, ' ') + of(65600, 'x') + "\n" + of(65536, ' ') + "end";
  write_file("blocks", content);
  input_file whole("blocks");
  EXPECT_EQ(rest_of(whole), content);
  input_file file("blocks");
  while (file.peek() == ' ') file.get();
  std::string line;
  file.read_line(NO_LIMIT, line);
  EXPECT_EQ(line, of(65600, 'x') + "\n");
  while (file.peek() == ' ') file.get();
  EXPECT_EQ(rest_of(file), "end");
}

TEST(InputFile, TellsWhyItCouldNotBeOpened) {
  const scratch_directory here;
  EXPECT_EQ(input_file("nothing").error(), ENOENT);
  EXPECT_EQ(input_file(of(300, 'x')).error(), ENAMETOOLONG);
  EXPECT_EQ(input_file("/dev/zero").error(), ENODEV);
  write_file("file", "");
  EXPECT_EQ(input_file("file/below").error(), ENOTDIR);
  EXPECT_EQ(input_file("file").error(), 0);
}

TEST(InputFile, KnowsThePlaceOfTheNextByte) {
  const scratch_directory here;
  write_file("file", "ab\ncd\n" + of(65536, 'x') + "\ny");
  input_file file("file");
  const auto place = [&] {
    return std::to_string(file.place().line) + ":" + std::to_string(file.place().column);
  };
  EXPECT_EQ(place(), "1:1");
  file.get();
  EXPECT_EQ(place(), "1:2");
  file.skip_line(1);
  EXPECT_EQ(place(), "1:3");
  file.get();
  EXPECT_EQ(place(), "2:1");
  file.skip_line(NO_LIMIT);
  EXPECT_EQ(place(), "3:1");
  file.skip_line(65536);
  EXPECT_EQ(place(), "3:65537");
  file.get();
  EXPECT_EQ(place(), "4:1");
  file.get();
  file.get();
  EXPECT_EQ(place(), "4:2");
}

TEST(InputFile, OfADirectoryOpensAndCannotBeRead) {
  const scratch_directory here;
  input_file file(here.path());
  EXPECT_TRUE(file.is_open());
  EXPECT_EQ(file.error(), 0);
  EXPECT_EQ(file.get(), input_file::END);
  EXPECT_EQ(file.error(), EISDIR);
}

TEST(InputFile, EndsForGoodAtAnError) {
  const scratch_directory here;
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  input_file file("pipe");
  const int writer = open("pipe", O_WRONLY | O_CLOEXEC);
  ASSERT_EQ(write(writer, "ab", 2), 2);
  EXPECT_EQ(file.get(), 'a');
  EXPECT_EQ(file.get(), 'b');
  EXPECT_EQ(file.peek(), input_file::END);  // nothing there, and more could come
  EXPECT_EQ(file.error(), EAGAIN);
  ASSERT_EQ(write(writer, "c", 1), 1);
  EXPECT_EQ(file.get(), input_file::END);
  close(writer);
}

}  // namespace
}  // namespace morvane
