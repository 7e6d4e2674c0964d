// Reading the value of an entry in a description.
#ifndef MORVANE_CATALOGUE_DESCRIPTION_READER_H
#define MORVANE_CATALOGUE_DESCRIPTION_READER_H

#include <optional>
#include <string>

#include "catalogue/description_fault.h"
#include "platform/input_file.h"

namespace morvane {

// A line of a quoted value or comment is read up to one byte more; a value that is longer than this
// is a fault, and the rest of its line is read as further entries.
inline constexpr int LONGEST_VALUE = 1024;

// Reads what follows a keyword in `file`: "=", a value and a comment. The value is a word, or
// quoted text up to the end of the line, or empty; `comment` receives the comment that ends the
// entry, with its "#". Leaves `file` behind the value, behind its line for quoted values and
// comments. Returns what is wrong with the value, if anything; it counts all the same.
std::optional<fault_kind> getvar(input_file& file, std::string& value, std::string& comment);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_DESCRIPTION_READER_H
