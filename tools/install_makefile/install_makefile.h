// The reader of the installation makefile, for those who run it product by product.
#ifndef MORVANE_INSTALL_MAKEFILE_INSTALL_MAKEFILE_H
#define MORVANE_INSTALL_MAKEFILE_INSTALL_MAKEFILE_H

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "output/product_facts.h"

namespace morvane {

struct install_makefile {
  std::string directory;                // that holds the archives
  std::vector<product_facts> products;  // in the order of the work
};

// Returns what `text` tells make to do, or the line, from 1 on, at which it is not what the
// configurator writes; behind the last line where its end is missing. Each fact that is taken from
// the text counts only because the makefile composed anew from all of them is that text, byte for
// byte. What the text does not say is empty: the owner, where an ordinary user configured, and the
// name of a product without targets.
std::variant<install_makefile, std::size_t> read_install_makefile(std::string_view text);

}  // namespace morvane

#endif  // MORVANE_INSTALL_MAKEFILE_INSTALL_MAKEFILE_H
