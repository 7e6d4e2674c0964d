#include "receipt/receipt_store.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <utility>

#include "command/whole_file.h"
#include "platform/file.h"
#include "receipt/receipt_reader.h"
#include "receipt/receipt_writer.h"
#include "tree/digest.h"
#include "tree/directory.h"

namespace morvane {

namespace {

constexpr unsigned OPEN_DIRECTORY = 0755;
constexpr unsigned OPEN_FILE = 0644;
constexpr unsigned GROUPS_FILE = 0640;
constexpr unsigned OWN_FILE = 0600;
constexpr unsigned WRITABLE_BY_OTHERS = 0022;

// As many digits of a digest tell the directories of a host apart.
constexpr std::size_t DIRECTORY_DIGITS = 16;

bool is_trusted(const file_status& status) {
  return (status.owner == 0 || status.owner == geteuid()) &&
         (status.mode & WRITABLE_BY_OTHERS) == 0;
}

std::string name_beside(const std::string& id) {
  return id + std::string(RECEIPT_ENDING);
}

// Returns the name of a receipt in the registry, in which products of one identifier may lie in
// several directories.
std::string name_in_registry(const receipt& named) {
  return named.id + "." + digest_of(named.directory).substr(0, DIRECTORY_DIGITS) +
         std::string(RECEIPT_ENDING);
}

descriptor open_registry(const std::string& registry) {
  descriptor opened = open_directory(registry);
  const auto status = opened.is_open() ? status_of(opened) : std::nullopt;
  if (!status) return descriptor();
  if (is_trusted(*status)) return opened;
  errno = EPERM;
  return descriptor();
}

void add(receipt_store& store, stored_receipt added) {
  const auto same = std::ranges::find_if(store.receipts, [&](const stored_receipt& each) {
    return each.content.id == added.content.id && each.content.directory == added.content.directory;
  });
  if (same == store.receipts.end()) {
    store.receipts.push_back(std::move(added));
    return;
  }
  added.registered |= same->registered;
  added.beside |= same->beside;
  same->registered = added.registered;
  same->beside = added.beside;
  const bool counts = added.trusted == same->trusted
                          ? added.content.configured > same->content.configured
                          : added.trusted;
  if (counts) *same = std::move(added);
}

// Reads the receipt `name` in an open directory, and notes what is wrong with it.
std::optional<stored_receipt> load(receipt_store& store, const descriptor& directory,
                                   const std::string& name, const std::string& shown) {
  const auto fail = [&](const std::string& why) {
    store.faults.push_back(shown + ": " + why);
    return std::nullopt;
  };
  const descriptor file = open_file_below(directory, name);
  const auto status = file.is_open() ? status_of(file) : std::nullopt;
  const auto text = status ? read_rest(file, LONGEST_RECEIPT) : std::nullopt;
  if (!text) {
    note_unread(store, shown);
    return std::nullopt;
  }
  auto reading = read_receipt(*text);
  if (const auto* fault = std::get_if<receipt_fault>(&reading)) {
    // Where only the superuser writes, it is no mischief of another user.
    if (is_trusted(*status)) store.complete = false;
    return fail("line " + std::to_string(fault->line) + ": " + fault->text);
  }
  stored_receipt stored;
  stored.content = std::move(std::get<receipt>(reading));
  stored.file = shown;
  stored.trusted = is_trusted(*status);
  return stored;
}

// Returns the names of the receipts in a directory.
std::optional<std::vector<std::string>> receipts_in(const descriptor& directory) {
  auto names = names_in(directory);
  if (names) {
    std::erase_if(*names, [](const std::string& name) { return !name.ends_with(RECEIPT_ENDING); });
  }
  return names;
}

// Tells whether the directory that a receipt names is the open one.
bool is_of(const receipt& looked_at, const file_status& directory) {
  const descriptor named = open_directory(looked_at.directory);
  const auto status = named.is_open() ? status_of(named) : std::nullopt;
  return status && status->device == directory.device && status->inode == directory.inode;
}

// Returns the group of the product, negative where the host does not know it.
int group_number(const receipt& of) {
  const group* found = getgrnam(of.group.c_str());
  return found == nullptr ? -1 : static_cast<int>(found->gr_gid);
}

// Opens PATH/install, which is made where it is missing.
descriptor open_install_directory(receipt& of) {
  const descriptor product = open_directory(of.directory);
  if (!product.is_open()) return descriptor();
  const std::string name(INSTALL_DIRECTORY);
  const bool made = mkdirat(product.number(), name.c_str(), OPEN_DIRECTORY) == 0;
  descriptor opened = open_below(product, name);
  const auto status = opened.is_open() ? status_of(opened) : std::nullopt;
  if (made && status) {
    receipt_entry entry = entry_of(name, *status);
    entry.before = before::NOTHING;
    entry.origin = entry_origin::CONFIGURATOR;
    std::erase_if(of.entries, [&](const receipt_entry& each) { return each.path == name; });
    of.entries.insert(std::ranges::upper_bound(of.entries, name, {}, &receipt_entry::path), entry);
  }
  return opened;
}

int unlink_in(const descriptor& directory, const std::string& name) {
  const bool gone = directory.is_open() && unlinkat(directory.number(), name.c_str(), 0) == 0;
  return gone || errno == ENOENT || errno == ENOTDIR || errno == ELOOP ? 0 : errno;
}

}  // namespace

void note_unread(receipt_store& store, const std::string& file) {
  store.faults.push_back(file + ": " + std::strerror(errno));
  const bool is_no_file = errno == EINVAL || errno == ELOOP;
  if (!is_no_file && (errno != EACCES || geteuid() == 0)) store.complete = false;
}

bool add_registered(receipt_store& store, const std::string& registry) {
  const descriptor directory = open_registry(registry);
  if (!directory.is_open()) return errno == ENOENT;
  const auto names = receipts_in(directory);
  if (!names) return false;
  for (const std::string& name : *names) {
    const std::string shown = registry + "/" + name;
    auto stored = load(store, directory, name, shown);
    if (stored && name_in_registry(stored->content) == name) {
      stored->registered = true;
      add(store, std::move(*stored));
      continue;
    }
    if (stored) store.faults.push_back(shown + ": its name does not fit what it holds");
  }
  return true;
}

bool add_beside(receipt_store& store, const std::string& directory) {
  const descriptor product = open_directory(directory);
  const auto status = product.is_open() ? status_of(product) : std::nullopt;
  if (!status) return false;
  const descriptor install = open_below(product, INSTALL_DIRECTORY);
  if (!install.is_open()) return errno == ENOENT;
  const auto names = receipts_in(install);
  if (!names) return false;
  for (const std::string& name : *names) {
    const std::string shown = directory + "/" + std::string(INSTALL_DIRECTORY) + "/" + name;
    auto stored = load(store, install, name, shown);
    if (!stored) continue;
    stored->beside = true;
    if (name_beside(stored->content.id) == name && is_of(stored->content, *status)) {
      add(store, std::move(*stored));
    } else {
      store.faults.push_back(shown + ": it tells of another product or directory");
    }
  }
  return true;
}

int keep_beside(receipt& kept) {
  const descriptor directory = open_install_directory(kept);
  if (!directory.is_open()) return errno;
  const bool written = write_whole_file_in(directory, name_beside(kept.id), receipt_text(kept),
                                           kept.access ? OPEN_FILE : GROUPS_FILE,
                                           kept.access ? -1 : group_number(kept));
  return written ? 0 : errno;
}

int keep_registered(const receipt& kept, const std::string& registry) {
  std::error_code error;
  std::filesystem::create_directories(registry, error);
  const descriptor directory = open_registry(registry);
  if (!directory.is_open()) return error ? error.value() : errno;
  const bool written = write_whole_file_in(directory, name_in_registry(kept), receipt_text(kept),
                                           kept.access ? OPEN_FILE : OWN_FILE, -1);
  return written ? 0 : errno;
}

const stored_receipt* find_trusted(const receipt_store& store, std::string_view id,
                                   std::string_view directory) {
  const auto found = std::ranges::find_if(store.receipts, [&](const stored_receipt& each) {
    return each.trusted && each.content.id == id && each.content.directory == directory;
  });
  return found == store.receipts.end() ? nullptr : &*found;
}

receipt_places keep_receipt(receipt& kept, const std::string& registry) {
  receipt_places places;
  places.beside = keep_beside(kept);
  places.registry = keep_registered(kept, registry);
  return places;
}

int drop_beside(const receipt& dropped) {
  const descriptor product = open_directory(dropped.directory);
  const descriptor install =
      product.is_open() ? open_below(product, INSTALL_DIRECTORY) : descriptor();
  return unlink_in(install, name_beside(dropped.id));
}

int drop_registered(const receipt& dropped, const std::string& registry) {
  return unlink_in(open_registry(registry), name_in_registry(dropped));
}

}  // namespace morvane
