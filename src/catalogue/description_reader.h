// Reading the value of an entry in a description.
#ifndef MORVANE_CATALOGUE_DESCRIPTION_READER_H
#define MORVANE_CATALOGUE_DESCRIPTION_READER_H

#include <string>

#include "platform/input_file.h"

namespace morvane {

// Tells whether `c` is white space, the newline included.
bool is_white_space(int c);

// Reads what follows a keyword in `file`: "=", a value and a comment. The value is a word, or
// quoted text up to the end of the line, or empty; `comment` receives the comment that ends the
// entry, with its "#". Leaves `file` behind the value, behind its line for quoted values and
// comments. Faults are reported on standard error and do not stop the reading.
void getvar(input_file& file, std::string& value, std::string& comment);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_DESCRIPTION_READER_H
