#include "verify/afterwards.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "archive/archive_contents.h"
#include "archive/archive_reader.h"
#include "catalogue/product_files.h"
#include "install_makefile/product_settings.h"
#include "installed/originals.h"
#include "tree/digest.h"
#include "tree/directory.h"
#include "tree/walk.h"

namespace morvane {

namespace {

std::optional<std::string> file_content(const std::string& path) {
  const descriptor file = open_for_reading(path);
  return file.is_open() ? read_rest(file) : std::nullopt;
}

std::optional<std::string> digest_at(const std::string& path) {
  const descriptor file = open_for_reading(path);
  return file.is_open() ? digest_of_file(file) : std::nullopt;
}

// Make gives owner, group and access by names up to the first blank, and read by the shell.
bool is_dealt_with(const std::string& name) {
  return !name.starts_with('-') && !name.starts_with('/') && name.find(' ') == std::string::npos;
}

// Returns the mode that is left of one in the archive: a change of owner takes the set-id bits of
// what is no directory, and a directory may have got the set-group-id bit of the one that it is in,
// as `found` then has it.
unsigned mode_left(const archive_member& member, unsigned found, bool closed) {
  constexpr unsigned INHERITED = S_ISGID;
  unsigned mode = member.mode;
  if (member.kind == member_kind::DIRECTORY) {
    mode |= found & INHERITED;
  } else {
    mode &= ~static_cast<unsigned>(S_ISUID);
    if ((mode & S_IXGRP) != 0) mode &= ~static_cast<unsigned>(S_ISGID);
  }
  return closed ? mode & ~static_cast<unsigned>(S_IRWXO) : mode;
}

file_kind kind_of(member_kind kind) {
  switch (kind) {
    case member_kind::FILE:
    case member_kind::HARD_LINK:
      return file_kind::FILE;
    case member_kind::DIRECTORY:
      return file_kind::DIRECTORY;
    case member_kind::LINK:
      return file_kind::LINK;
    case member_kind::OTHER:
      break;
  }
  return file_kind::OTHER;
}

// Makes one receipt, step by step.
class maker {
 public:
  explicit maker(const product_facts& facts) : facts_(facts) {}

  std::variant<receipt, std::string> make() {
    std::string refusal = begin();
    if (refusal.empty()) refusal = read_members();
    if (!refusal.empty()) return refusal;
    add_directories_above();
    add_configurators_files();
    note_times();
    if (unread_) return "a file that is copied to it cannot be read";
    for (auto& [path, entry] : entries_) made_.entries.push_back(std::move(entry));
    return std::move(made_);
  }

 private:
  std::string begin() {
    if (!facts_.is_new) return "install.mk does not install it, but configures it again";
    made_.id = facts_.id;
    made_.directory = normal_path(facts_.path).value_or("");
    directory_ = open_directory(made_.directory);
    if (!directory_.is_open()) return "its directory " + facts_.path + " is not there";
    walked_ = walk(directory_);
    const auto top = status_of(directory_);
    if (top) top_ = *top;
    if (!top || !walked_.faults.empty())
      return "its directory " + facts_.path + " cannot be read in full";
    for (const tree_file& file : walked_.files) found_.emplace(file.path, &file.status);
    made_.name = facts_.shown_name;
    made_.owner = facts_.owner;
    made_.group = facts_.group;
    made_.access = !facts_.closed;
    made_.made_afterwards = true;
    made_.parts = facts_.targets;
    return facts_.described ? read_settings_file() : "";
  }

  std::string read_settings_file() {
    const std::string path = "install/" + facts_.id + std::string(SETTINGS_ENDING);
    const descriptor file = open_file_below(directory_, path);
    const auto content = file.is_open() ? read_rest(file, LONGEST_SETTINGS) : std::nullopt;
    if (!content) return "it is not installed: " + made_.directory + "/" + path + " is missing";
    const product_settings settings = read_settings(*content);
    made_.name = settings.name;
    made_.version = settings.version;
    for (const settled_need& need : settings.needs) {
      made_.needs.push_back({need.category, need.directory, need.name, need.version});
    }
    made_.description = digest_at(facts_.id + std::string(DESCRIPTION_ENDING)).value_or("");
    made_.originals = originals_of(made_.directory, facts_.id);
    return "";
  }

  std::string read_members() {
    const std::string archive = facts_.id + std::string(ARCHIVE_ENDING);
    const auto digest = digest_at(archive);
    const archive_content read = read_archive(archive, PRODUCT_MAKEFILE);
    const auto contents = contents_of(archive);
    if (!digest || read.fault.has_value() || !contents || contents->size() < read.members.size()) {
      return "its archive " + archive + " cannot be read";
    }
    made_.archive = *digest;
    product_makefile_ = read.wanted;
    for (std::size_t i = 0; i < read.members.size(); ++i) add(read.members[i], (*contents)[i]);
    std::erase_if(entries_, [&](const auto& each) { return lies_below_link(each.first); });
    return "";
  }

  void add(const archive_member& member, const member_content& content) {
    const std::optional<std::string> path = normal_path(member.name);
    if (!path) return;
    const std::string below = path->starts_with('/') ? path->substr(1) : *path;
    receipt_entry entry = on_disk(below);
    entry.kind = kind_of(member.kind);
    if (member.kind == member_kind::HARD_LINK) {
      const auto target = entries_.find(normal_path(member.target).value_or(""));
      if (target == entries_.end()) return;
      entry = target->second;
    } else if (member.kind == member_kind::LINK) {
      entry.mode = 0777;
      entry.target = member.target;
    } else {
      set_rights(entry, member);
    }
    if (member.kind == member_kind::FILE) {
      entry.size = content.size;
      entry.modified = content.modified;
      entry.digest = content.digest;
    }
    entry.path = below;
    entries_[below] = entry;
  }

  void set_rights(receipt_entry& entry, const archive_member& member) const {
    entry.mode =
        is_dealt_with(member.name) ? mode_left(member, entry.mode, facts_.closed) : member.mode;
    if (!is_dealt_with(member.name)) return;
    const passwd* owner = facts_.superuser ? getpwnam(facts_.owner.c_str()) : nullptr;
    if (owner != nullptr) entry.owner = owner->pw_uid;
    const group* group = getgrnam(facts_.group.c_str());
    if (group != nullptr) entry.group = group->gr_gid;
  }

  // Returns what lies at a path, with no digest, as an entry.
  receipt_entry on_disk(const std::string& path) const {
    receipt_entry entry;
    if (path == ".") {
      entry = entry_of(path, top_);
    } else if (const auto found = found_.find(path); found != found_.end()) {
      entry = entry_of(path, *found->second);
    }
    entry.path = path;
    entry.before = before::UNKNOWN;
    return entry;
  }

  // What tar extracts through a link lies elsewhere.
  bool lies_below_link(const std::string& path) const {
    for (std::string above = split(path).above; above != "."; above = split(above).above) {
      const auto found = entries_.find(above);
      if (found != entries_.end() && found->second.kind == file_kind::LINK) return true;
    }
    return false;
  }

  // Directories that the archive does not list are made all the same.
  void add_directories_above() {
    std::set<std::string> above;
    for (const auto& [path, entry] : entries_) {
      for (std::string each = split(path).above; each != "."; each = split(each).above) {
        above.insert(each);
      }
    }
    for (const std::string& path : above) {
      receipt_entry entry = on_disk(path);
      entry.kind = file_kind::DIRECTORY;
      entries_.emplace(path, entry);
    }
    receipt_entry top = on_disk(".");
    top.origin = entry_origin::CONFIGURATOR;
    entries_.emplace(".", top);
  }

  // They take the place of what the archive has under their names.
  void add_configurators_files() {
    for (const std::string_view name : INST_FILES) {
      if (std::ranges::find(facts_.files, name) != facts_.files.end()) {
        add_copy(std::string(name), std::string(name), entry_origin::CONFIGURATOR);
      }
    }
    const bool has_makefile = entries_.erase(std::string(PRODUCT_MAKEFILE)) != 0;
    if (has_makefile) add_prepared_makefile();
    if (!facts_.described) return;
    const std::string description = description_file(facts_.id);
    const std::string settings = settings_file(facts_.id);
    add_copy(description, "install/" + description, entry_origin::CONFIGURATOR);
    add_copy(settings, "install/" + settings, entry_origin::SETTINGS);
    receipt_entry install = on_disk(std::string(INSTALL_DIRECTORY));
    install.origin = entry_origin::CONFIGURATOR;
    entries_.emplace(install.path, install);
  }

  void add_copy(const std::string& copied, const std::string& path, entry_origin origin) {
    const std::optional<std::string> content = file_content(copied);
    if (content) {
      add_file(path, *content, origin);
    } else if (errno != ENOENT) {
      unread_ = true;
    }
  }

  void add_prepared_makefile() {
    const std::string path = "install/" + facts_.id + ".make";
    const std::string head = "include " + settings_file(facts_.id) + "\n";
    if (product_makefile_) add_file(path, head + *product_makefile_, entry_origin::CONFIGURATOR);
  }

  void add_file(const std::string& path, std::string_view content, entry_origin origin) {
    receipt_entry entry = on_disk(path);
    entry.kind = file_kind::FILE;
    entry.origin = origin;
    entry.size = content.size();
    entry.digest = digest_of(content);
    entry.target.clear();
    entries_[path] = entry;
  }

  // Each installation changes all that the archive lists, and later ones what they replace.
  void note_times() {
    std::optional<std::int64_t> first;
    for (const auto& [path, entry] : entries_) {
      const auto found = found_.find(path);
      if (found == found_.end() || entry.origin != entry_origin::ARCHIVE) continue;
      if (!first || found->second->changed < *first) first = found->second->changed;
    }
    made_.installed = static_cast<std::uint64_t>(std::max<std::int64_t>(first.value_or(0), 0));
    made_.configured = made_.installed;
    const auto settings = found_.find("install/" + settings_file(facts_.id));
    if (settings != found_.end()) {
      const auto changed = std::max<std::int64_t>(settings->second->changed, 0);
      made_.configured = std::max(made_.configured, static_cast<std::uint64_t>(changed));
    }
  }

  const product_facts& facts_;
  receipt made_;
  descriptor directory_;
  file_status top_;  // of that directory
  walked_tree walked_;
  std::map<std::string, const file_status*> found_;
  std::map<std::string, receipt_entry> entries_;
  std::optional<std::string> product_makefile_;
  bool unread_ = false;  // a file of the distribution
};

}  // namespace

std::variant<receipt, std::string> receipt_afterwards(const product_facts& facts) {
  return maker(facts).make();
}

}  // namespace morvane
