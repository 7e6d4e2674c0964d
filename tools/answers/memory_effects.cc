#include "answers/memory_effects.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/identity.h"
#include "platform/shell.h"
#include "platform/signals.h"
#include "text/format.h"
#include "text/quoting.h"

namespace morvane {

namespace {

bool may_write(const std::string& path) {
  return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

bool may_create_entry(const std::string& directory) {
  return faccessat(AT_FDCWD, directory.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

// As `touch` finds it: an owner may set the times of what he may not write.
bool may_touch(const std::string& path) {
  if (may_write(path)) return true;
  struct stat status;
  return errno == EACCES && stat(path.c_str(), &status) == 0 && status.st_uid == geteuid();
}

bool is_directory(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool is_there(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

std::string directory_above(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

class memory {
 public:
  explicit memory(rehearsed_deeds& deeds) : deeds_(deeds) {}

  bool exists(const std::string& path) const {
    const auto file = deeds_.files.find(path);
    if (file != deeds_.files.end()) return file->second.has_value();
    return is_made(path) || morvane::exists(path);
  }

  bool is_file(const std::string& name) const {
    const auto file = deeds_.files.find(name);
    return file == deeds_.files.end() ? effects_on_host().is_file(name) : file->second.has_value();
  }

  bool make_directory(const std::string& path) {
    std::vector<std::string> missing = missing_directories(path);
    std::erase_if(missing, [&](const std::string& each) { return is_made(each); });
    if (missing.empty()) return is_made(path) || is_directory(path);
    // A link that leads nowhere is in the way.
    if (std::ranges::any_of(missing, is_there)) return false;
    const std::string above = directory_above(missing.front());
    if (!is_made(above) && (!is_directory(above) || !may_create_entry(above))) return false;
    deeds_.directories.insert(deeds_.directories.end(), missing.begin(), missing.end());
    return true;
  }

  bool may_create_in(const std::string& directory) const {
    if (is_made(directory)) return true;
    return morvane::exists(directory) ? may_touch(directory)
                                      : may_create_entry(directory_above(directory));
  }

  group_trial try_group(const std::string& probe, std::string_view group) {
    struct stat status;
    const bool there = !is_gone(probe) && stat(probe.c_str(), &status) == 0;
    if (there ? !may_touch(probe) : !may_create_entry(".")) return group_trial::NO_PROBE;
    const bool foreign = there && status.st_uid != geteuid() && !acts_as_superuser();
    if (foreign) return group_trial::REFUSED;
    const std::string scratch = scratch_file();
    const descriptor file = create_scratch_file(scratch);
    if (!file.is_open()) return group_trial::NO_PROBE;
    const bool allowed =
        run_command(fill("chgrp %s %s 2>/dev/null 1>/dev/null", {quote(group), quote(scratch)}));
    unlink(scratch.c_str());
    keep_on_signal(scratch);
    return allowed ? group_trial::ALLOWED : group_trial::REFUSED;
  }

  void remove_probe(const std::string& probe) { deeds_.files[probe] = std::nullopt; }

  write_outcome write_file(const std::string& name, earlier_file earlier,
                           const composition& compose) {
    if (!can_be_opened(name)) return write_outcome::NOT_OPENED;
    std::optional<std::string> content = compose();
    if (content) {
      deeds_.written.emplace_back(name, *content);
      deeds_.files[name] = std::move(content);
      return write_outcome::WRITTEN;
    }
    if (earlier == earlier_file::GOES) deeds_.files[name] = std::nullopt;
    return write_outcome::NOT_WRITTEN;
  }

 private:
  bool is_made(const std::string& path) const {
    return std::ranges::find(deeds_.directories, path) != deeds_.directories.end();
  }

  bool is_gone(const std::string& name) const {
    const auto file = deeds_.files.find(name);
    return file != deeds_.files.end() && !file->second;
  }

  bool can_be_opened(const std::string& name) const {
    struct stat status;
    if (is_gone(name) || stat(name.c_str(), &status) != 0) return may_create_entry(".");
    const bool waits_for_nobody = S_ISREG(status.st_mode) || S_ISCHR(status.st_mode);
    return waits_for_nobody && may_write(name);
  }

  rehearsed_deeds& deeds_;
};

}  // namespace

effects effects_in_memory(rehearsed_deeds& deeds) {
  memory host(deeds);
  effects replacement = effects_on_host();  // listing finds nothing in what is not there
  replacement.exists = [=](std::string_view path) { return host.exists(std::string(path)); };
  replacement.is_file = [=](const std::string& name) { return host.is_file(name); };
  replacement.make_directory = [=](const std::string& path) mutable {
    return host.make_directory(path);
  };
  replacement.may_create_in = [=](const std::string& directory) {
    return host.may_create_in(directory);
  };
  replacement.try_group = [=](const std::string& probe, std::string_view group) mutable {
    return host.try_group(probe, group);
  };
  replacement.remove_probe = [=](const std::string& probe) mutable { host.remove_probe(probe); };
  replacement.write_file = [=](const std::string& name, earlier_file earlier,
                               const composition& compose) mutable {
    return host.write_file(name, earlier, compose);
  };
  return replacement;
}

std::vector<std::string> missing_directories(const std::string& path) {
  std::vector<std::string> missing;
  for (std::string each = path; each != "/" && each != "." && !exists(each);
       each = directory_above(each)) {
    missing.insert(missing.begin(), each);
  }
  return missing;
}

}  // namespace morvane
