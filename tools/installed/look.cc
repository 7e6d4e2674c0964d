#include "installed/look.h"

#include <grp.h>
#include <pwd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "report/finding.h"
#include "tree/digest.h"
#include "tree/directory.h"

namespace morvane {

namespace {

bool tells_of_nothing(int error) {
  return error == ENOENT || error == ENOTDIR || error == ELOOP;
}

// Looks at paths one behind the other, with the directory of the last one still open.
class looker {
 public:
  explicit looker(const descriptor& product) : product_(product) {}

  found_path look(const std::string& path) {
    found_path found;
    const split_path place = split(path);
    if (place.above != above_ || !directory_.is_open()) {
      above_ = place.above;
      directory_ = open_below(product_, above_);
    }
    if (directory_.is_open()) found.status = look_at(directory_, place.name);
    if (!found.status && !tells_of_nothing(errno)) found.error = errno;
    return found;
  }

 private:
  const descriptor& product_;
  std::string above_;
  descriptor directory_;
};

std::string user_name(std::uint64_t number) {
  const passwd* found = getpwuid(static_cast<uid_t>(number));
  return found == nullptr ? std::to_string(number) : found->pw_name;
}

std::string group_name(std::uint64_t number) {
  const group* found = getgrgid(static_cast<gid_t>(number));
  return found == nullptr ? std::to_string(number) : found->gr_name;
}

std::string octal(unsigned mode) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%o", mode);
  return digits;
}

std::string instead(const std::string& what, const std::string& found,
                    const std::string& expected) {
  return what + " " + found + " instead of " + expected;
}

}  // namespace

std::vector<found_path> look_at_entries(const descriptor& product,
                                        const std::vector<const receipt_entry*>& entries) {
  std::vector<found_path> found;
  std::vector<sized_file> files;  // those whose content may be as it was
  std::vector<std::size_t> slots;
  looker looking(product);
  for (const receipt_entry* entry : entries) {
    found.push_back(looking.look(entry->path));
    const auto& status = found.back().status;
    const bool is_file = entry->kind == file_kind::FILE && status &&
                         status->kind == file_kind::FILE && status->size == entry->size;
    if (!is_file) continue;
    files.push_back({entry->path, entry->size});
    slots.push_back(found.size() - 1);
  }
  std::vector<std::optional<std::string>> digests = digests_below(product, files);
  for (std::size_t i = 0; i < slots.size(); ++i) found[slots[i]].digest = std::move(digests[i]);
  return found;
}

difference compare(const receipt_entry& expected, const found_path& found) {
  difference differs;
  differs.unknown = found.error != 0;
  differs.missing = !found.status && !differs.unknown;
  if (!found.status) return differs;
  const file_status& status = *found.status;
  differs.kind = status.kind != expected.kind;
  if (differs.kind) return differs;
  differs.mode = status.mode != expected.mode && expected.kind != file_kind::LINK;
  differs.owner = status.owner != expected.owner;
  differs.group = status.group != expected.group;
  differs.target = status.target != expected.target;
  if (expected.kind != file_kind::FILE) return differs;
  differs.size = status.size != expected.size;
  differs.unknown = !differs.size && !found.digest;
  differs.content = differs.size || (found.digest && *found.digest != expected.digest);
  return differs;
}

std::string words_of(const receipt_entry& expected, const found_path& found) {
  const difference differs = compare(expected, found);
  if (differs.missing) return "missing";
  if (!found.status) return std::string("cannot be looked at: ") + std::strerror(found.error);
  const file_status& status = *found.status;
  std::vector<std::string> words;
  if (differs.kind) {
    words.push_back(
        instead("is", std::string(kind_name(status.kind)), std::string(kind_name(expected.kind))));
  }
  if (differs.unknown) words.emplace_back("content cannot be read");
  if (differs.size) {
    words.push_back(instead("content changed, size", std::to_string(status.size),
                            std::to_string(expected.size)));
  } else if (differs.content) {
    words.emplace_back("content changed");
  }
  if (differs.target) {
    words.push_back(instead("leads to", in_quotes(status.target), in_quotes(expected.target)));
  }
  if (differs.mode) words.push_back(instead("mode", octal(status.mode), octal(expected.mode)));
  if (differs.owner) {
    words.push_back(instead("owner", user_name(status.owner), user_name(expected.owner)));
  }
  if (differs.group) {
    words.push_back(instead("group", group_name(status.group), group_name(expected.group)));
  }
  std::string joined;
  for (const std::string& word : words) joined += (joined.empty() ? "" : "; ") + word;
  return joined;
}

}  // namespace morvane
