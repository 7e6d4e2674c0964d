// Reading a product's description into its record.
#ifndef MORVANE_CATALOGUE_DESCRIPTION_PARSER_H
#define MORVANE_CATALOGUE_DESCRIPTION_PARSER_H

#include <functional>
#include <string_view>

#include "catalogue/description_fault.h"
#include "catalogue/product.h"

namespace morvane {

enum class read_outcome {
  DONE,        // to the end, or to an error behind which nothing is read
  MISSING,     // there is no description
  IMPOSSIBLE,  // there is one, and it cannot be opened, or it is a directory
};

// What a description holds, as it is read: an entry that counts, or a line of comment. The texts
// are those of the reader: they live as long as the call that hands the entry over.
struct description_entry {
  place_in_file place;       // where it begins
  message_number keyword{};  // none for a comment
  std::string_view value;    // a comment's is its line, without the "#" and the newline
};

using entry_listener = std::function<void(const description_entry&)>;

// Fills `record` from the description "DIRECTORY/IDENTIFIER.descr": initialises it first, so that
// afterwards its state is INITIALISED and its `id` the identifier whatever happened. `descr_avail`
// is NO_DESCRIPTION exactly where the file could not be opened. Faulty entries are handed to
// `listener` as they are met, and skipped; so is that a description which is there cannot be read,
// or not to its end. Whoever needs to know where the entries stand gives `entries`, which takes
// each one once it is stored.
read_outcome read_product(std::string_view directory, std::string_view identifier, product& record,
                          const fault_listener& listener = diagnose_fault,
                          const entry_listener& entries = nullptr);

// As `read_product`, for a description that was read before, of which faults are not told.
void read_product_in(std::string_view text, std::string_view identifier, product& record);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_DESCRIPTION_PARSER_H
