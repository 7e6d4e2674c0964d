// Directories: the general question for one, and the installation path of a product.
#ifndef MORVANE_SETTINGS_PATH_H
#define MORVANE_SETTINGS_PATH_H

#include <string>
#include <string_view>

#include "catalogue/product.h"
#include "console/question.h"

namespace morvane {

// What `get_valid_path` does with a directory besides asking for it.
struct path_demands {
  bool offer_to_create = false;  // where it is missing
  bool writable = false;         // test that it can be written
  bool insist = false;           // ask again until it exists
};

struct chosen_path {
  std::string path;  // absolute, normalised, at most 127 bytes
  bool exists = false;
};

// Asks for a directory until the answer is an absolute path (a user's home directory may be written
// with "~") that meets `demands`. `about` is the question, without the proposal in its text.
chosen_path get_valid_path(const question& about, const path_demands& demands);

// Settles the installation path of `record`: the path of a product that it belongs with, or what
// the operator answers. Does nothing where it is settled. A missing (null) or free record is
// reported on standard error.
void get_product_path(product* record);

// Returns `path` without repeated slashes and, but for "/" itself, without slashes at its end.
std::string normalise_path(std::string_view path);

}  // namespace morvane

#endif  // MORVANE_SETTINGS_PATH_H
