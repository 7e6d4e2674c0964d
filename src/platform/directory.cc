#include "platform/directory.h"

#include <dirent.h>
#include <fnmatch.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "platform/diagnostic.h"
#include "platform/file.h"
#include "platform/shell.h"
#include "platform/trusted_path.h"
#include "text/format.h"
#include "text/quoting.h"
#include "text/words.h"

namespace morvane {

namespace {

// Tells whether two directories are the same by comparing what `ls` says of their inodes. Leaves
// both scratch files behind; the next probe overwrites them. Where the shell cannot enter the
// candidate it compares the directory with itself, and inodes of two file systems can be equal: a
// candidate that somebody else put there must not pass for the directory.
bool same_directory(const std::string& directory, const std::string& candidate) {
  const std::string first = scratch_file();
  const std::string second = second_scratch_file();
  if (!create_scratch_file(first).is_open() || !create_scratch_file(second).is_open()) return false;
  return run_command(fill("cd %s; ls -id 1> %s 2> /dev/null; cd %s; ls -id 1> %s 2> /dev/null; "
                          "diff %s %s 1> /dev/null 2> /dev/null",
                          {quote(directory), first, quote(candidate), second, first, second})) &&
         is_same_file(directory, candidate);
}

// The entries of a directory that fit a pattern and are not directories themselves: what a listing
// may name. The shell lists what it finds in a directory that fits, too, and the current directory
// where it cannot enter the one it was told.
struct directory_entries {
  std::string directory;
  std::string pattern;

  // Returns the lines of `listing` that name such an entry.
  file_names named_in(std::string_view listing) const {
    file_names names;
    for (const std::string_view line : split_words(listing, "\n")) {
      const std::string name(line);
      if (fits(name.c_str()) && is_there(name) && !is_directory(name)) names.push_back(name);
    }
    return names;
  }

  // Tells whether there is such an entry, as far as this user may know.
  bool any() const {
    DIR* opened = opendir(directory.c_str());
    if (opened == nullptr) return errno != ENOENT && errno != ENOTDIR && errno != EACCES;
    const dirent* entry;
    do {
      errno = 0;
      entry = readdir(opened);
    } while (entry != nullptr && (!fits(entry->d_name) || is_directory(entry->d_name)));
    const bool found = entry != nullptr || errno != 0;
    closedir(opened);
    return found;
  }

 private:
  std::string path_of(const std::string& name) const { return directory + "/" + name; }

  bool fits(const char* name) const {
    return fnmatch(pattern.c_str(), name, FNM_PERIOD | FNM_PATHNAME) == 0;
  }

  // What cannot be looked at is there all the same: the listing says so. Only where the directory
  // cannot be entered it speaks of another one.
  bool is_there(const std::string& name) const {
    struct stat status;
    if (lstat(path_of(name).c_str(), &status) == 0) return true;
    return errno != ENOENT && errno != ENOTDIR && errno != EACCES;
  }

  bool is_directory(const std::string& name) const {
    struct stat status;
    return stat(path_of(name).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  }
};

}  // namespace

std::optional<file_names> get_files(std::string_view directory, std::string_view pattern) {
  const directory_entries entries{std::string(directory), std::string(pattern)};
  if (!exists(directory)) return file_names();
  // The pattern has no quotes: the shell expands it.
  const auto listing = output_of(
      fill("cd %s; ls %s 1> %s 2> /dev/null", {quote(directory), pattern, scratch_file()}));
  if (listing) return entries.named_in(*listing);
  // `ls` fails as well where nothing matches, which is no fault.
  if (!entries.any()) return file_names();
  diagnose_error(fill("directory '%s' cannot be listed", {directory}));
  return std::nullopt;
}

std::optional<std::string> get_pwd() {
  std::optional<std::string> directory =
      output_of(fill("pwd 1> %s 2> /dev/null", {scratch_file()}));
  if (!directory || directory->empty()) return std::nullopt;
  directory->pop_back();
  if (directory->empty()) return std::nullopt;

  // Of "/export/home/x" the candidate is "/home/x".
  const std::size_t second_slash = directory->find('/', directory->find('/') + 1);
  if (second_slash == std::string::npos) return directory;
  const std::string candidate = directory->substr(second_slash);
  const bool usable =
      exists(candidate) && same_directory(*directory, candidate) && cannot_be_redirected(candidate);
  return usable ? candidate : directory;
}

}  // namespace morvane
