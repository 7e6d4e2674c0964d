#include "install/kept_copies.h"

#include <cerrno>
#include <cstring>
#include <optional>

#include "install/product_plan.h"
#include "platform/file.h"
#include "tree/copy.h"
#include "tree/directory.h"
#include "tree/file_status.h"

namespace morvane {

namespace {

// Copies `path`, which lies below an open directory, unless it is gone. What lay there before
// another product of this run came is kept already, and stays.
bool keep(const descriptor& product, const std::string& path, const std::string& to) {
  const split_path at = split(path);
  const descriptor above = open_below(product, at.above);
  const auto status = above.is_open() ? look_at(above, at.name) : std::nullopt;
  if (!status) return errno == ENOENT;
  return make_private_directories(split(to).above) &&
         (copy_to(above, at.name, *status, to) || errno == EEXIST);
}

}  // namespace

std::string keep_replaced(const product_plan& product, const std::string& directory) {
  const std::string& top = product.facts.path;
  const descriptor opened = open_directory(top);
  if (!opened.is_open()) return top + ": " + std::strerror(errno);
  for (const std::string& path : product.replaced) {
    const std::string whole = path_of(product.facts, path);
    if (!keep(opened, path, directory + whole)) {
      return "no copy of " + whole + " could be kept: " + std::strerror(errno);
    }
  }
  return "";
}

}  // namespace morvane
