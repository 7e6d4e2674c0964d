#include "lint/misnamed.h"

#include <array>
#include <cstddef>
#include <span>

#include "lint/spelling.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

// In small letters, behind an identifier.
constexpr auto DESCRIPTION_ENDINGS = std::to_array<string_view>(
    {".descr", ".desc", ".dsc", ".descr.txt", ".description", "_descr", "-descr", ".descr.gz"});
constexpr auto ARCHIVE_ENDINGS = std::to_array<string_view>(
    {".tar", ".tar.gz", ".tgz", ".tar.bz2", ".tbz2", ".tar.xz", ".txz", ".tar.zst", ".zip"});
constexpr auto MESSAGE_ENDINGS =
    std::to_array<string_view>({".rsc", ".rsc.txt", ".rsc.in", ".rsc~", ".rsc.bak", ".rcs"});

string find_file(string_view stem, std::span<const string_view> endings,
                 const std::vector<string>& files) {
  for (const string& file : files) {
    for (const string_view ending : endings) {
      if (is_same_but_for_capitals(file, string(stem) + string(ending))) return file;
    }
  }
  return "";
}

}  // namespace

string misnamed_description(string_view identifier, const std::vector<string>& files) {
  return find_file(identifier, DESCRIPTION_ENDINGS, files);
}

string misnamed_archive(string_view identifier, const std::vector<string>& files) {
  return find_file(identifier, ARCHIVE_ENDINGS, files);
}

string misnamed_messages(const std::vector<string>& files) {
  return find_file("morvane", MESSAGE_ENDINGS, files);
}

}  // namespace morvane
