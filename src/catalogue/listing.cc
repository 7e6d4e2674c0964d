#include "catalogue/listing.h"

#include <algorithm>
#include <new>

#include "console/message_format.h"
#include "console/message_table.h"
#include "platform/diagnostic.h"
#include "platform/file.h"
#include "platform/shell.h"
#include "version/version.h"

namespace morvane {

namespace {

// Tells whether two directories are the same by comparing what `ls` says of their inodes. Leaves
// both scratch files behind; the next probe overwrites them. Where the shell cannot enter the
// candidate it compares the directory with itself, and inodes of two file systems can be equal: a
// candidate that somebody else put there must not pass for the directory.
bool same_directory(const std::string& directory, const std::string& candidate) {
  const std::string first = scratch_file();
  const std::string second = second_scratch_file();
  if (!create_scratch_file(first) || !create_scratch_file(second)) return false;
  return run_command(fill("cd %s; ls -id 1> %s 2> /dev/null; cd %s; ls -id 1> %s 2> /dev/null; "
                          "diff %s %s 1> /dev/null 2> /dev/null",
                          {quote(directory), first, quote(candidate), second, first, second})) &&
         is_same_file(directory, candidate);
}

// Returns the lines of `listing`, without empty ones at its end.
std::vector<std::string> split_lines(std::string_view listing) {
  std::vector<std::string> lines;
  while (!listing.empty()) {
    const std::size_t length = std::min(listing.find('\n'), listing.size());
    lines.emplace_back(listing.substr(0, length));
    listing.remove_prefix(std::min(length + 1, listing.size()));
  }
  while (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

}  // namespace

std::vector<std::string> get_files(std::string_view directory, std::string_view pattern) {
  if (!exists(directory)) return {};
  const auto listing = output_of(
      fill("cd %s; ls %s 1> %s 2> /dev/null", {quote(directory), pattern, scratch_file()}));
  if (!listing) return {};
  try {
    return split_lines(*listing);
  } catch (const std::bad_alloc&) {
    diagnose_exhausted_memory();
    return {};
  }
}

std::optional<std::string> get_pwd() {
  std::optional<std::string> directory =
      output_of(fill("pwd 1> %s 2> /dev/null", {scratch_file()}));
  if (!directory || directory->empty()) return std::nullopt;
  directory->pop_back();
  if (directory->empty()) return std::nullopt;

  const std::size_t second_slash = directory->find('/', directory->find('/') + 1);
  if (second_slash == std::string::npos) return directory;
  const std::string candidate = directory->substr(second_slash);
  return exists(candidate) && same_directory(*directory, candidate) ? candidate : directory;
}

std::string current_directory() {
  const std::optional<std::string> directory = get_pwd();
  if (!directory) {
    diagnose(fill("%s : warning : failed to get current directory.\n", {PROGRAM_NAME}));
  }
  return directory.value_or("");
}

std::string installed_products_directory(std::string_view directory) {
  return fill("%s/%s", {directory, r[INSTALLED_PRODUCTS_DIRECTORY]});
}

std::string_view identifier_of(std::string_view file_name, std::string_view ending) {
  return file_name.substr(0, file_name.size() - std::min(file_name.size(), ending.size()));
}

}  // namespace morvane
