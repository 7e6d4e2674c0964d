#include "lint/archived_files.h"

namespace morvane {

std::string joined_name(const std::vector<std::string_view>& parts) {
  std::string path;
  for (const std::string_view part : parts) {
    if (!path.empty()) path += '/';
    path += part;
  }
  return path;
}

bool holds_beginning(const archived_files& files, const std::string& beginning) {
  const auto first = files.lower_bound(beginning);
  return first != files.end() && first->starts_with(beginning);
}

bool is_there(const archived_files& files, const std::string& path) {
  return files.contains(path) || holds_beginning(files, path + "/");
}

}  // namespace morvane
