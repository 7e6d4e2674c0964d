#include "remove/dependents.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "catalogue/product_files.h"
#include "install_makefile/product_settings.h"
#include "platform/file.h"
#include "tree/directory.h"
#include "tree/file_status.h"

namespace morvane {

namespace {

bool is_known(const receipt_store& store, const std::string& id, const std::string& directory) {
  return std::ranges::any_of(store.receipts, [&](const stored_receipt& each) {
    return each.content.id == id && each.content.directory == directory;
  });
}

// Tells whether a need means the product: by its directory and name, or by its directory alone
// where no product there has that name.
bool means(const receipt_store& store, const receipt_need& need, const receipt& product) {
  if (normal_path(need.directory) != product.directory) return false;
  return need.name == product.name ||
         std::ranges::none_of(store.receipts, [&](const stored_receipt& each) {
           return each.content.directory == product.directory && each.content.name == need.name;
         });
}

// Returns why `user` needs `product`, or nothing where it does not.
std::optional<std::string> reason(const receipt_store& store, const receipt& user,
                                  const receipt& product) {
  if (user.directory == product.directory &&
      std::ranges::find(user.originals, product.id) != user.originals.end()) {
    return "is a patch of";
  }
  const bool needs = std::ranges::any_of(
      user.needs, [&](const receipt_need& need) { return means(store, need, product); });
  return needs ? std::optional("needs") : std::nullopt;
}

std::string shown(const receipt& product) {
  return "'" + product.id + "' in " + product.directory;
}

}  // namespace

void add_settings_in(receipt_store& store, const std::string& directory) {
  const descriptor product = open_directory(directory);
  const descriptor install =
      product.is_open() ? open_below(product, INSTALL_DIRECTORY) : descriptor();
  const auto names = install.is_open() ? names_in(install) : std::nullopt;
  const auto normal = normal_path(directory);
  if (!names || !normal) {
    if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) note_unread(store, directory);
    return;
  }
  for (const std::string& name : *names) {
    if (!name.ends_with(SETTINGS_ENDING)) continue;
    const std::string id = name.substr(0, name.size() - SETTINGS_ENDING.size());
    if (id.empty() || is_known(store, id, *normal)) continue;
    const descriptor file = open_file_in(install, name);
    const auto text = file.is_open() ? read_rest(file, LONGEST_SETTINGS) : std::nullopt;
    if (!text) {
      if (errno == EINVAL || errno == ELOOP) continue;  // it is no file
      note_unread(store, directory + "/" + std::string(INSTALL_DIRECTORY) + "/" + name);
      continue;
    }
    const product_settings settings = read_settings(*text);
    stored_receipt told;
    told.content.id = id;
    told.content.name = settings.name;
    told.content.version = settings.version;
    told.content.directory = *normal;
    for (const settled_need& need : settings.needs) {
      told.content.needs.push_back({need.category, need.directory, need.name, need.version});
    }
    store.receipts.push_back(std::move(told));
  }
}

bool add_products_below(receipt_store& store, const std::string& directory) {
  const descriptor searched = open_directory(directory);
  const auto names = searched.is_open() ? names_in(searched) : std::nullopt;
  if (!names) return false;
  std::vector<std::string> places = {directory};
  for (const std::string& name : *names) places.push_back(directory + "/" + name);
  for (const std::string& place : places) {
    if (add_beside(store, place)) {
      add_settings_in(store, place);
    } else if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) {
      note_unread(store, place);
    }
  }
  return true;
}

std::vector<std::string> who_needs(const receipt_store& store, const product_set& removed) {
  std::vector<std::string> lines;
  product_set lacking = removed;
  std::vector<const receipt*> reached(removed.begin(), removed.end());
  for (std::size_t i = 0; i < reached.size(); ++i) {
    for (const stored_receipt& stored : store.receipts) {
      const receipt& user = stored.content;
      if (lacking.contains(&user)) continue;
      const auto why = reason(store, user, *reached[i]);
      if (!why) continue;
      lines.push_back(shown(user) + " " + *why + " " + shown(*reached[i]));
      lacking.insert(&user);
      reached.push_back(&user);
    }
  }
  return lines;
}

std::vector<const stored_receipt*> in_order(const std::vector<const stored_receipt*>& products) {
  receipt_store store;  // of these alone
  for (const stored_receipt* product : products) store.receipts.push_back(*product);
  std::vector<std::size_t> left(products.size());
  for (std::size_t i = 0; i < left.size(); ++i) left[i] = i;
  std::vector<const stored_receipt*> ordered;
  while (!left.empty()) {
    // Products that need each other in a ring go in their order.
    auto next = std::ranges::find_if(left, [&](std::size_t i) {
      return std::ranges::none_of(left, [&](std::size_t user) {
        return user != i && reason(store, store.receipts[user].content, store.receipts[i].content);
      });
    });
    if (next == left.end()) next = left.begin();
    ordered.push_back(products[*next]);
    left.erase(next);
  }
  return ordered;
}

}  // namespace morvane
