#include "installed/claims.h"

#include <algorithm>

namespace morvane {

namespace {

// Returns `directory` with a slash behind it.
std::string with_slash(const std::string& directory) {
  return directory.ends_with('/') ? directory : directory + "/";
}

bool overlap(const std::string& a, const std::string& b) {
  return with_slash(a).starts_with(with_slash(b)) || with_slash(b).starts_with(with_slash(a));
}

// Returns the entry for an absolute path, or null.
const receipt_entry* entry_at(const receipt& searched, const std::string& absolute) {
  if (absolute == searched.directory) return find_entry(searched, ".");
  const std::string above = with_slash(searched.directory);
  if (!absolute.starts_with(above)) return nullptr;
  return find_entry(searched, std::string_view(absolute).substr(above.size()));
}

}  // namespace

neighbours::neighbours(const receipt_store& store, const receipt& of) : of_(of) {
  for (const stored_receipt& stored : store.receipts) {
    if (&stored.content != &of && overlap(stored.content.directory, of.directory)) {
      others_.push_back(&stored.content);
    }
  }
}

std::vector<claim> neighbours::claims_on(const receipt_entry& entry) const {
  std::vector<claim> claims;
  if (others_.empty()) return claims;
  const std::string path = absolute_path(of_, entry);
  for (const receipt* other : others_) {
    const receipt_entry* same = entry_at(*other, path);
    if (same != nullptr) claims.push_back({other, same});
  }
  return claims;
}

claim neighbours::last_on(const receipt_entry& entry) const {
  claim last = {&of_, &entry};
  for (const claim& other : claims_on(entry)) {
    if (time_of(*other.by, *other.entry) > time_of(*last.by, *last.entry)) last = other;
  }
  return last;
}

bool neighbours::know(const std::string& absolute) const {
  return std::ranges::any_of(others_, [&](const receipt* other) {
    return entry_at(*other, absolute) != nullptr || file_beside(*other) == absolute;
  });
}

std::string file_beside(const receipt& of) {
  return with_slash(of.directory) + std::string(INSTALL_DIRECTORY) + "/" + of.id +
         std::string(RECEIPT_ENDING);
}

}  // namespace morvane
