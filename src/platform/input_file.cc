#include "platform/input_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "text/white_space.h"

namespace morvane {

namespace {

constexpr std::size_t BLOCK_SIZE = 65536;

}  // namespace

input_file::input_file(const std::string& path) : file_(open_for_reading(path)) {
  if (!is_open()) error_ = errno;
  struct stat status;
  if (is_open() && fstat(file_.number(), &status) == 0 && S_ISREG(status.st_mode)) {
    size_ = static_cast<std::size_t>(status.st_size);
  }
}

input_file input_file::holding(std::string_view content) {
  input_file made;
  made.size_ = content.size();
  made.block_ = std::make_unique_for_overwrite<char[]>(content.size());
  std::ranges::copy(content, made.block_.get());
  made.next_ = made.block_.get();
  made.end_ = made.next_ + content.size();
  return made;
}

bool input_file::read_block() {
  if (ended_ || !is_open()) return false;
  before_block_ = offset();
  // Not filled with zeros: most files are much shorter.
  if (!block_) block_ = std::make_unique_for_overwrite<char[]>(BLOCK_SIZE);
  const ssize_t count = read_uninterrupted(file_, block_.get(), BLOCK_SIZE);
  if (count < 0) error_ = errno;
  ended_ = count <= 0;
  next_ = block_.get();
  end_ = next_ + std::max<ssize_t>(count, 0);
  return !ended_;
}

void input_file::read_word(std::string& word) {
  read_while([](int c) { return !is_white_space(c); }, word);
}

void input_file::read_line(std::size_t limit, std::string& line) {
  while (limit > 0 && peek() != END) {
    const std::size_t reach = std::min(limit, static_cast<std::size_t>(end_ - next_));
    const void* newline = std::memchr(next_, '\n', reach);
    const char* taken = newline == nullptr ? next_ + reach : static_cast<const char*>(newline) + 1;
    const auto count = static_cast<std::size_t>(taken - next_);
    line.append(next_, count);
    limit -= count;
    next_ = taken;
    if (newline == nullptr) continue;
    begin_line();
    return;
  }
}

void input_file::skip_line(std::size_t limit) {
  std::string dropped;
  read_line(limit, dropped);
}

}  // namespace morvane
