#include "platform/input_file.h"

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
}

bool input_file::read_block() {
  if (ended_ || !is_open()) return false;
  before_block_ = offset();
  block_.resize(BLOCK_SIZE);
  const ssize_t count = read_uninterrupted(file_, block_.data(), block_.size());
  if (count < 0) error_ = errno;
  ended_ = count <= 0;
  next_ = block_.data();
  end_ = next_ + std::max<ssize_t>(count, 0);
  return !ended_;
}

void input_file::read_word(std::string& word) {
  for (int c; (c = peek()) != END && !is_white_space(c);) word += static_cast<char>(get());
}

void input_file::read_line(std::size_t limit, std::string& line) {
  while (limit > 0 && peek() != END) {
    const std::size_t reach = std::min(limit, static_cast<std::size_t>(end_ - next_));
    const void* newline = std::memchr(next_, '\n', reach);
    const char* taken = newline == nullptr ? next_ + reach : static_cast<const char*>(newline) + 1;
    line.append(next_, taken);
    limit -= static_cast<std::size_t>(taken - next_);
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
