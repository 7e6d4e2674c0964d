// The settings file of a product: make variables that tell its own makefile where things are.
#ifndef MORVANE_OUTPUT_SETTINGS_FILE_H
#define MORVANE_OUTPUT_SETTINGS_FILE_H

#include "catalogue/product.h"

namespace morvane {

// Writes the settings file of `record`, a configured product, into the current directory; nothing
// where the product has no description. A file that cannot be opened ends the program; one that
// cannot be written in full is reported on standard error.
void write_dat_file(const product& record);

}  // namespace morvane

#endif  // MORVANE_OUTPUT_SETTINGS_FILE_H
