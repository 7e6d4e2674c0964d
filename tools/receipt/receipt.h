// The receipt of an installed product: what its installation put where, and what it needs.
// morvane.receipt(5) describes the file that holds one.
#ifndef MORVANE_RECEIPT_RECEIPT_H
#define MORVANE_RECEIPT_RECEIPT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tree/file_status.h"

namespace morvane {

// What lay at a path before the product was installed for the first time.
enum class before {
  NOTHING,
  EMPTY,    // an empty directory
  THERE,    // something else
  UNKNOWN,  // the receipt was made afterwards
};

// Who put it there.
enum class entry_origin {
  ARCHIVE,
  CONFIGURATOR,  // its own files, the description, the prepared makefile, the directory of these
  SETTINGS,
  PART,
  PERHAPS,  // a part, or nobody of this product: the receipt was made afterwards
};

struct receipt_entry {
  std::string path;  // below the product's directory, in normal form; "." is that itself
  file_kind kind = file_kind::OTHER;
  unsigned mode = 0;
  std::uint64_t owner = 0;
  std::uint64_t group = 0;
  morvane::before before = before::UNKNOWN;
  entry_origin origin = entry_origin::ARCHIVE;
  std::uint64_t size = 0;     // of a file, as the next two
  std::int64_t modified = 0;  // seconds
  std::string digest;
  std::string target;  // of a link

  bool operator==(const receipt_entry&) const = default;
};

// A product that a chosen part needs, as the settings name it.
struct receipt_need {
  std::string category;
  std::string directory;
  std::string name;
  std::string version;

  bool operator==(const receipt_need&) const = default;
};

struct receipt {
  std::string id;
  std::string name;  // as the settings call it
  std::string version;
  std::string directory;  // absolute, in normal form
  std::string owner;      // empty where an ordinary user configured
  std::string group;
  bool access = true;                  // others keep it
  bool made_afterwards = false;        // not by the installation itself
  bool complete = true;                // no installation began since that has not ended well
  std::uint64_t installed = 0;         // when the archive was extracted, in nanoseconds
  std::uint64_t configured = 0;        // when settings and parts were made, likewise
  std::string archive;                 // its digest; empty where it was not there any more
  std::string description;             // the same; empty also where there is none
  std::vector<std::string> parts;      // those that were made
  std::vector<std::string> originals;  // identifiers of what it is a patch of
  std::vector<receipt_need> needs;
  std::vector<receipt_entry> entries;  // sorted by their paths, as the bytes sort

  bool operator==(const receipt&) const = default;
};

// Returns the entry of that path, or null.
const receipt_entry* find_entry(const receipt& searched, std::string_view path);

// Returns when the product put the entry there: of two products, the later one's entry is what lies
// at the path.
std::uint64_t time_of(const receipt& of, const receipt_entry& entry);

// Returns the absolute path of an entry.
std::string absolute_path(const receipt& of, const receipt_entry& entry);

// Returns what was found as an entry, but for its digest.
receipt_entry entry_of(const std::string& path, const file_status& found);

// Returns the time now, in nanoseconds.
std::uint64_t time_now();

// Takes over from the receipt of an earlier installation in the same directory: what lay there
// before the first one; and the entries that `now` lacks, for nothing removes what they tell of.
void carry_over(receipt& now, const receipt& earlier);

}  // namespace morvane

#endif  // MORVANE_RECEIPT_RECEIPT_H
