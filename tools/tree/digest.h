// What tells contents apart: their SHA-256.
#ifndef MORVANE_TREE_DIGEST_H
#define MORVANE_TREE_DIGEST_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"

namespace morvane {

// A digest is written as 64 hexadecimal digits in lower case.
inline constexpr std::size_t DIGEST_DIGITS = 64;

bool is_digest(std::string_view text);

// Takes contents piece by piece.
class digester {
 public:
  digester();
  ~digester();
  digester(const digester&) = delete;
  digester& operator=(const digester&) = delete;

  void add(std::string_view piece);

  // Returns the digest of what was added, and begins anew.
  std::string take();

 private:
  struct state;
  std::unique_ptr<state> state_;
};

std::string digest_of(std::string_view content);

// Returns the digest of what is left to read of `file`, or nothing where that fails, as `errno`
// tells.
std::optional<std::string> digest_of_file(const descriptor& file);

// The same for a file that others may write to meanwhile, and make longer without end: nothing,
// with EAGAIN in `errno`, where it does not hold `size` bytes.
std::optional<std::string> digest_of_file(const descriptor& file, std::uint64_t size);

struct sized_file {
  std::string path;
  std::uint64_t size = 0;
};

// Returns the digests of plain files below `directory`, in their order; nothing for one that cannot
// be read, is no plain file, or has another size. All processors take part.
std::vector<std::optional<std::string>> digests_below(const descriptor& directory,
                                                      const std::vector<sized_file>& files);

}  // namespace morvane

#endif  // MORVANE_TREE_DIGEST_H
