// What an archive of a product holds.
#ifndef MORVANE_ARCHIVE_ARCHIVE_READER_H
#define MORVANE_ARCHIVE_ARCHIVE_READER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

// More members, or more bytes in their names, are not read: no command takes so many names.
inline constexpr std::size_t MOST_MEMBERS = 500'000;
inline constexpr std::size_t MOST_NAME_BYTES = 64UL * 1024 * 1024;

// The file of a product that makes its parts.
inline constexpr std::string_view PRODUCT_MAKEFILE = "install/Makefile";

// So many bytes of an archive are read at a time.
inline constexpr std::size_t ARCHIVE_BLOCK = 65'536;

// No more of the content of a member is kept.
inline constexpr std::size_t MOST_CONTENT = 1024UL * 1024;

enum class member_kind { FILE, DIRECTORY, LINK, HARD_LINK, OTHER };

struct archive_member {
  member_kind kind = member_kind::OTHER;
  unsigned mode = 0;       // the permissions, with the set-id bits
  std::string name;        // as it stands in the archive, without the slash behind a directory
  std::string target;      // of a link
  std::uint64_t size = 0;  // of the content of a file
};

enum class archive_fault {
  CANNOT_BE_OPENED,
  EMPTY_FILE,
  COMPRESSED,
  NOT_READABLE,  // no tar archive, or damaged, or cut off
  NO_END,        // the last block is not the end of a tar archive
  TOO_MANY,      // members, or bytes in their names
};

struct archive_content {
  std::vector<archive_member> members;  // in their order, those before a fault
  std::optional<archive_fault> fault;
  std::string reason;                 // of the fault, where there is more to say
  std::optional<std::string> wanted;  // the content of the last member of the wanted name
};

// Returns what the tar archive `path` holds, and the content of its file `wanted`, a name without
// "./" before it. Contents are passed over. The file is only read, whatever it holds.
archive_content read_archive(const std::string& path, std::string_view wanted);

// Returns `name` in parts: those between its slashes that are neither empty nor ".".
std::vector<std::string_view> parts_of_name(std::string_view name);

}  // namespace morvane

#endif  // MORVANE_ARCHIVE_ARCHIVE_READER_H
