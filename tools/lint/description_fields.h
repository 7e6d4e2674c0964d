// What the entries of a description take: how long a value may be, and what it is.
#ifndef MORVANE_LINT_DESCRIPTION_FIELDS_H
#define MORVANE_LINT_DESCRIPTION_FIELDS_H

#include <cstddef>

#include "messages/numbers.h"

namespace morvane {

enum class value_kind {
  OPENING,  // opens a part, a needed product or a type
  TEXT,
  LINES,  // further entries add lines
  NUMBER,
  VERSION,
  LIST,
};

// Where an entry belongs, from the outside to the inside.
enum class nesting { PRODUCT, PART, NEED, TYPE };

struct description_field {
  message_number keyword;
  value_kind kind;
  nesting level;            // an opening entry belongs to what it opens
  std::size_t longest = 0;  // bytes that are kept of a value, of each word of a list; 0: all
  std::size_t most = 0;     // words of a list that are kept; 0: all
};

// Returns what the entry of a keyword takes.
const description_field& field_of(message_number keyword);

}  // namespace morvane

#endif  // MORVANE_LINT_DESCRIPTION_FIELDS_H
