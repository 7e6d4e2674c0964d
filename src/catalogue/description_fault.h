// What is wrong in a description, as a value: whoever reads one decides what to say of it.
#ifndef MORVANE_CATALOGUE_DESCRIPTION_FAULT_H
#define MORVANE_CATALOGUE_DESCRIPTION_FAULT_H

#include <functional>
#include <string>
#include <string_view>

#include "messages/numbers.h"
#include "platform/input_file.h"

namespace morvane {

enum class fault_kind {
  UNKNOWN_KEYWORD,
  NO_ROOM_FOR_TARGET,
  OUTSIDE_TARGET,  // and belongs to one
  OUTSIDE_NEED,    // and belongs to a needed product or its type; or there is no room for it
  VALUE_TOO_LONG,  // its rest is read as further entries
  QUOTE_NOT_CLOSED,
  CANNOT_BE_READ,  // the file, from this place on
};

// The texts are those of the reader: they live as long as the call that reports the fault.
struct description_fault {
  fault_kind kind;
  std::string_view identifier;
  std::string_view path;     // of the file, as it was opened
  place_in_file place;       // where the entry begins
  std::string_view keyword;  // as it stands there
  message_number entry{};    // what the keyword is, where it is known
};

using fault_listener = std::function<void(const description_fault&)>;

// Reports a fault on standard error.
void diagnose_fault(const description_fault& fault);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_DESCRIPTION_FAULT_H
