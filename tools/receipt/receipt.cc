#include "receipt/receipt.h"

#include <algorithm>
#include <chrono>

namespace morvane {

const receipt_entry* find_entry(const receipt& searched, std::string_view path) {
  const auto found = std::ranges::lower_bound(searched.entries, path, {}, &receipt_entry::path);
  return found == searched.entries.end() || found->path != path ? nullptr : &*found;
}

std::uint64_t time_of(const receipt& of, const receipt_entry& entry) {
  const bool each_time = entry.origin == entry_origin::SETTINGS ||
                         entry.origin == entry_origin::PART ||
                         entry.origin == entry_origin::PERHAPS;
  return each_time ? of.configured : of.installed;
}

std::string absolute_path(const receipt& of, const receipt_entry& entry) {
  if (entry.path == ".") return of.directory;
  return of.directory + (of.directory.ends_with('/') ? "" : "/") + entry.path;
}

receipt_entry entry_of(const std::string& path, const file_status& found) {
  receipt_entry entry;
  entry.path = path;
  entry.kind = found.kind;
  entry.mode = found.mode;
  entry.owner = found.owner;
  entry.group = found.group;
  entry.target = found.target;
  if (found.kind == file_kind::FILE) {
    entry.size = found.size;
    entry.modified = found.modified;
  }
  return entry;
}

std::uint64_t time_now() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::nanoseconds>(since).count());
}

void carry_over(receipt& now, const receipt& earlier) {
  std::vector<receipt_entry> lacking;
  for (const receipt_entry& before : earlier.entries) {
    const auto same = std::ranges::lower_bound(now.entries, before.path, {}, &receipt_entry::path);
    if (same == now.entries.end() || same->path != before.path) {
      lacking.push_back(before);
    } else {
      same->before = before.before;
    }
  }
  now.entries.insert(now.entries.end(), lacking.begin(), lacking.end());
  std::ranges::sort(now.entries, {}, &receipt_entry::path);
}

}  // namespace morvane
