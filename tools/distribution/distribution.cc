#include "distribution/distribution.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <memory>

#include "catalogue/product_files.h"
#include "messages/table.h"
#include "platform/file.h"
#include "platform/input_file.h"

namespace morvane {

namespace {

bool is_directory(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Returns the names in `directory`, sorted; nothing where it cannot be listed.
std::optional<std::vector<std::string>> names_in(const std::string& directory) {
  const std::unique_ptr<DIR, int (*)(DIR*)> opened(opendir(directory.c_str()), closedir);
  if (opened == nullptr) return std::nullopt;
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = readdir(opened.get())) names.emplace_back(entry->d_name);
  if (errno != 0) return std::nullopt;
  std::ranges::sort(names);
  return names;
}

// As the shell's "*ENDING": hidden files do not fit.
std::optional<std::string> identifier_of(const std::string& name, std::string_view ending) {
  if (name.starts_with('.') || !name.ends_with(ending)) return std::nullopt;
  return name.substr(0, name.size() - ending.size());
}

// Notes where the parts of a product and their needs are opened.
void locate(const located_entry& entry, std::vector<located_part>& parts) {
  if (entry.value.empty()) return;  // opens nothing
  if (entry.keyword == KEYWORD_TARGET) {
    parts.push_back({entry.place, {}});
  } else if (entry.keyword == KEYWORD_NEEDS_CATEGORY) {
    parts.back().categories.push_back({entry.place, {}});
  } else if (entry.keyword == KEYWORD_NEEDS_TYPE) {
    parts.back().categories.back().types.push_back(entry.place);
  }
}

// Returns the content of `path`, at most `most` bytes of it.
std::string content_of(const std::string& path, std::size_t most) {
  input_file file(path);
  std::string content;
  while (content.size() < most && file.peek() != input_file::END) {
    file.read_line(most - content.size(), content);
  }
  return content;
}

}  // namespace

read_description load_description(const std::string& directory, const std::string& identifier) {
  read_description read;
  read.file = shown_directory(directory) + identifier + std::string(DESCRIPTION_ENDING);
  const std::string path = description_path(directory, identifier);
  struct stat status;
  if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
      static_cast<std::size_t>(status.st_size) > LONGEST_DESCRIPTION) {
    read.too_long = true;
    read.outcome = read_outcome::IMPOSSIBLE;
    init_product(read.record);
    read.record.id = identifier;
    return read;
  }
  read.text = content_of(path, LONGEST_DESCRIPTION);
  read.outcome = read_product(
      directory, identifier, read.record,
      [&](const description_fault& fault) {
        read.faults.push_back({fault.place, fault.kind, std::string(fault.keyword), fault.entry});
      },
      [&](const description_entry& entry) {
        read.entries.push_back({entry.place, entry.keyword, std::string(entry.value)});
        locate(read.entries.back(), read.parts);
      });
  return read;
}

std::optional<distribution> load_distribution(const std::string& directory) {
  std::optional<std::vector<std::string>> names = names_in(directory);
  if (!names) return std::nullopt;
  distribution loaded;
  loaded.directory = shown_directory(directory);
  loaded.files = *names;

  std::map<std::string, distributed_product> products;
  for (const std::string& name : loaded.files) {
    if (is_directory(directory + "/" + name)) continue;
    if (const auto identifier = identifier_of(name, ARCHIVE_ENDING)) {
      products[*identifier].archive = loaded.directory + name;
    } else if (const auto described = identifier_of(name, DESCRIPTION_ENDING)) {
      products[*described];
    }
  }
  for (auto& [identifier, product] : products) {
    product.identifier = identifier;
    product.has_source_tree = is_directory(directory + "/" + identifier);
    product.description = load_description(directory, identifier);
    loaded.products.push_back(std::move(product));
  }
  return loaded;
}

std::string shown_directory(std::string_view directory) {
  while (directory.ends_with('/') && directory.size() > 1) directory.remove_suffix(1);
  if (directory == ".") return "";
  std::string shown(directory);
  return shown.ends_with('/') ? shown : shown + '/';
}

bool load_messages(const std::string& file) {
  input_file opened(file);
  if (!opened.is_open()) return false;
  read_messages(opened, r);
  rscok = true;
  return opened.error() == 0;
}

// As make-distribution does, it goes by where it lies itself: in the build directory, or installed.
std::optional<std::string> own_message_file() {
  std::array<char, 4096> path;
  const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
  if (size < 0) return std::nullopt;
  std::string directory(path.data(), static_cast<std::size_t>(size));
  directory.resize(directory.rfind('/'));
  for (const char* place : {"/morvane.rsc", "/../share/morvane/morvane.rsc"}) {
    if (access((directory + place).c_str(), R_OK) == 0) return directory + place;
  }
  return std::nullopt;
}

bool choose_messages(const std::string& directory) {
  if (load_messages(directory + "/morvane.rsc")) return true;
  const std::optional<std::string> own = own_message_file();
  return own && load_messages(*own);
}

}  // namespace morvane
