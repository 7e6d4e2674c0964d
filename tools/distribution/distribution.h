// A distribution as the program sees it, without asking or starting anything, and with the places
// of what its descriptions say.
#ifndef MORVANE_DISTRIBUTION_DISTRIBUTION_H
#define MORVANE_DISTRIBUTION_DISTRIBUTION_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/description_fault.h"
#include "catalogue/description_parser.h"
#include "catalogue/product.h"

namespace morvane {

// A longer description is not read.
inline constexpr std::size_t LONGEST_DESCRIPTION = 1024UL * 1024;

struct located_entry {
  place_in_file place;
  message_number keyword{};  // none for a comment
  std::string value;
};

struct located_fault {
  place_in_file place;
  fault_kind kind;
  std::string keyword;     // as it stands there
  message_number entry{};  // what it is, where it is known
};

// Where the parts of a product, what they need and the types of that are opened: the slots of the
// record in their order, those it has no room for included.
struct located_category {
  place_in_file place;
  std::vector<place_in_file> types;
};

struct located_part {
  place_in_file place;
  std::vector<located_category> categories;
};

struct read_description {
  std::string file;  // as findings name it
  bool too_long = false;
  read_outcome outcome = read_outcome::MISSING;
  std::string text;
  product record;
  std::vector<located_entry> entries;
  std::vector<located_fault> faults;
  std::vector<located_part> parts;
};

struct distributed_product {
  std::string identifier;
  std::optional<std::string> archive;  // its file, as findings name it
  bool has_source_tree = false;        // a directory of its name, which an archive can be made of
  read_description description;
};

struct distribution {
  std::string directory;  // as findings name it, with a slash behind it; empty for the current one
  std::vector<distributed_product> products;  // by their identifiers, as the bytes sort
  std::vector<std::string> files;             // all names in the directory, sorted likewise
};

// Returns the description `file`, read with the keywords of the message table `r`.
read_description load_description(const std::string& directory, const std::string& identifier);

// Returns what lies in `directory`, or nothing where it cannot be listed, as `errno` then tells.
// Fill the message table before, for its keywords.
std::optional<distribution> load_distribution(const std::string& directory);

// Returns `directory` as findings name what lies in it: "" or with a slash behind it.
std::string shown_directory(std::string_view directory);

// Fills the message table `r` from `file`; returns whether that could be read.
bool load_messages(const std::string& file);

// Returns the message file that came with the command, or nothing where it is not there.
std::optional<std::string> own_message_file();

// Fills the message table, which has the keywords of descriptions, from the message file in
// `directory`, else from the one that came with the command; returns whether there is one.
bool choose_messages(const std::string& directory);

}  // namespace morvane

#endif  // MORVANE_DISTRIBUTION_DISTRIBUTION_H
