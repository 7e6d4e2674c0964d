#include "tree/digest.h"

#include <nettle/sha2.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <system_error>
#include <thread>

#include "tree/directory.h"

namespace morvane {

namespace {

constexpr std::size_t BLOCK_SIZE = 65'536;

// More threads than that only wait for the disk.
constexpr unsigned MOST_THREADS = 8;

constexpr std::uint64_t ANY_SIZE = std::numeric_limits<std::uint64_t>::max();

constexpr std::string_view HEX_DIGITS = "0123456789abcdef";

std::string as_digits(const std::array<std::uint8_t, SHA256_DIGEST_SIZE>& bytes) {
  std::string digits;
  for (const std::uint8_t byte : bytes) {
    digits += HEX_DIGITS[byte / 16U];
    digits += HEX_DIGITS[byte % 16U];
  }
  return digits;
}

// Adds what is left to read of `file`, but no further block once there were more than `enough`
// bytes. Returns how many were added, or nothing where that fails.
std::optional<std::uint64_t> add_rest(digester& digest, const descriptor& file,
                                      std::uint64_t enough) {
  std::uint64_t added = 0;
  const auto block = std::make_unique_for_overwrite<char[]>(BLOCK_SIZE);
  while (added <= enough) {
    const ssize_t count = read_uninterrupted(file, block.get(), BLOCK_SIZE);
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    digest.add({block.get(), static_cast<std::size_t>(count)});
    added += static_cast<std::uint64_t>(count);
  }
  return added;
}

}  // namespace

bool is_digest(std::string_view text) {
  return text.size() == DIGEST_DIGITS &&
         text.find_first_not_of(HEX_DIGITS) == std::string_view::npos;
}

struct digester::state {
  sha256_ctx context;
};

digester::digester() : state_(std::make_unique<state>()) {
  sha256_init(&state_->context);
}

digester::~digester() = default;

void digester::add(std::string_view piece) {
  sha256_update(&state_->context, piece.size(),
                reinterpret_cast<const std::uint8_t*>(piece.data()));
}

std::string digester::take() {
  std::array<std::uint8_t, SHA256_DIGEST_SIZE> bytes;
  sha256_digest(&state_->context, bytes.size(), bytes.data());
  return as_digits(bytes);
}

std::string digest_of(std::string_view content) {
  digester digest;
  digest.add(content);
  return digest.take();
}

std::optional<std::string> digest_of_file(const descriptor& file) {
  digester digest;
  if (!add_rest(digest, file, ANY_SIZE)) return std::nullopt;
  return digest.take();
}

std::optional<std::string> digest_of_file(const descriptor& file, std::uint64_t size) {
  digester digest;
  const auto added = add_rest(digest, file, size);
  if (added == size) return digest.take();
  if (added) errno = EAGAIN;
  return std::nullopt;
}

std::vector<std::optional<std::string>> digests_below(const descriptor& directory,
                                                      const std::vector<sized_file>& files) {
  std::vector<std::optional<std::string>> digests(files.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    split_path last;
    descriptor above;  // of the last file: the next one mostly lies there, too
    for (std::size_t i = next++; i < files.size(); i = next++) {
      const split_path place = split(files[i].path);
      if (!above.is_open() || place.above != last.above) above = open_below(directory, place.above);
      last = place;
      const descriptor file = above.is_open() ? open_file_in(above, place.name) : descriptor();
      if (file.is_open()) digests[i] = digest_of_file(file, files[i].size);
    }
  };
  std::vector<std::thread> helpers;
  const std::size_t wanted = std::min<std::size_t>(
      std::clamp(std::thread::hardware_concurrency(), 1U, MOST_THREADS), files.size());
  try {
    while (helpers.size() + 1 < wanted) helpers.emplace_back(work);
  } catch (const std::system_error&) {
    // The host gives no more threads: those that there are do the work.
  }
  work();
  for (std::thread& helper : helpers) helper.join();
  return digests;
}

}  // namespace morvane
