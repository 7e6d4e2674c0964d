#include "installed/selection.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <set>

#include "report/finding.h"
#include "tree/directory.h"
#include "tree/file_status.h"

namespace morvane {

namespace {

// An operand without a slash may be either; an identifier comes first.
bool is_path(const std::string& operand) {
  return operand.find('/') != std::string::npos || operand == "." || operand == "..";
}

bool is_directory(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool is_same_directory(const std::string& a, const std::string& b) {
  struct stat first;
  struct stat second;
  return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// A product that an operand names by the file of the receipt beside it.
struct named_product {
  std::string id;
  std::string directory;
};

std::optional<named_product> named_by_receipt(const std::string& operand) {
  std::error_code error;
  const std::filesystem::path file = std::filesystem::absolute(operand, error).lexically_normal();
  const std::filesystem::path install = file.parent_path();
  if (error || !is_path(operand) || file.extension() != RECEIPT_ENDING ||
      install.filename() != INSTALL_DIRECTORY) {
    return std::nullopt;
  }
  return named_product{file.stem(), install.parent_path()};
}

void read_beside(receipt_store& store, const std::string& directory) {
  if (add_beside(store, directory)) return;
  if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) note_unread(store, directory);
}

void select(selection& selected, const stored_receipt& product) {
  if (std::ranges::find(selected.products, &product) == selected.products.end()) {
    selected.products.push_back(&product);
  }
}

// Selects the products in a directory; returns their number.
std::size_t select_in(selection& selected, const receipt_store& store,
                      const std::string& directory) {
  std::size_t count = 0;
  for (const stored_receipt& stored : store.receipts) {
    if (stored.file.empty() || !is_same_directory(stored.content.directory, directory)) continue;
    select(selected, stored);
    ++count;
  }
  return count;
}

// Its directory may be gone: then the registry tells of it.
bool select_named(selection& selected, const receipt_store& store, const named_product& named) {
  for (const stored_receipt& stored : store.receipts) {
    const receipt& of = stored.content;
    if (of.id != named.id || stored.file.empty()) continue;
    if (of.directory != named.directory && !is_same_directory(of.directory, named.directory)) {
      continue;
    }
    select(selected, stored);
    return true;
  }
  return false;
}

void select_identifier(selection& selected, const receipt_store& store, const std::string& id) {
  std::vector<const stored_receipt*> found;
  for (const stored_receipt& stored : store.receipts) {
    if (stored.content.id == id && !stored.file.empty()) found.push_back(&stored);
  }
  if (found.size() == 1) return select(selected, *found.front());
  std::string fault = printable(id) + ": there is no receipt of such a product";
  if (!found.empty()) {
    fault = printable(id) + ": installed in several directories, name one of them:";
    for (const stored_receipt* each : found) fault += " " + printable(each->content.directory);
  }
  selected.faults.push_back(fault);
}

}  // namespace

receipt_store load_receipts(const std::string& registry, const std::vector<std::string>& operands) {
  receipt_store store;
  if (!add_registered(store, registry)) {
    if (errno == EPERM) {
      store.faults.push_back(registry + ": others than the superuser and you can write it");
      store.complete = false;
    } else {
      note_unread(store, registry);
    }
  }
  std::set<std::string> directories;
  for (const stored_receipt& stored : store.receipts) directories.insert(stored.content.directory);
  for (const std::string& operand : operands) {
    if (const auto named = named_by_receipt(operand)) directories.insert(named->directory);
    std::error_code error;
    const auto absolute = std::filesystem::absolute(is_path(operand) ? operand : ".", error);
    if (!error) directories.insert(absolute.lexically_normal());
    if (!is_path(operand) && is_directory(operand)) directories.insert(absolute / operand);
  }
  for (const std::string& directory : directories) read_beside(store, directory);
  return store;
}

selection select_products(const receipt_store& store, const std::vector<std::string>& operands) {
  selection selected;
  for (const std::string& operand : operands) {
    const bool known = std::ranges::any_of(
        store.receipts, [&](const stored_receipt& stored) { return stored.content.id == operand; });
    if (!known && is_directory(operand)) {
      if (select_in(selected, store, operand) == 0) {
        selected.faults.push_back(printable(operand) + ": there is no receipt of a product in it");
      }
    } else if (const auto named = named_by_receipt(operand)) {
      if (!select_named(selected, store, *named)) {
        selected.faults.push_back(printable(operand) + ": there is no such receipt");
      }
    } else {
      select_identifier(selected, store, operand);
    }
  }
  if (operands.empty()) {
    for (const stored_receipt& stored : store.receipts) select(selected, stored);
  }
  return selected;
}

}  // namespace morvane
