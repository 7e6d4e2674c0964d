// What lies where the entries of a receipt say, beside what they say of it.
#ifndef MORVANE_INSTALLED_LOOK_H
#define MORVANE_INSTALLED_LOOK_H

#include <optional>
#include <string>
#include <vector>

#include "platform/file.h"
#include "receipt/receipt.h"
#include "tree/file_status.h"

namespace morvane {

// What was found at the path of an entry. What can only be reached through a link is not there.
struct found_path {
  std::optional<file_status> status;  // nothing where nothing is there, or where it is not known
  std::optional<std::string> digest;  // of a file of the size that was expected
  int error = 0;                      // an errno: why something is not known
};

// Looks at the paths of `entries`, which are sorted by them, below the directory of a product.
std::vector<found_path> look_at_entries(const descriptor& product,
                                        const std::vector<const receipt_entry*>& entries);

// In what an entry and what was found differ.
struct difference {
  bool missing = false;
  bool unknown = false;  // it, or its content, cannot be read
  bool kind = false;     // then nothing else is compared
  bool size = false;
  bool content = false;  // also where the size differs
  bool mode = false;
  bool owner = false;
  bool group = false;
  bool target = false;

  bool any() const {
    return missing || unknown || kind || content || mode || owner || group || target;
  }
};

difference compare(const receipt_entry& expected, const found_path& found);

// Returns that in words, such as "content changed; mode 600 instead of 644".
std::string words_of(const receipt_entry& expected, const found_path& found);

}  // namespace morvane

#endif  // MORVANE_INSTALLED_LOOK_H
