#include "depend/installed_version.h"

#include "depend/described_version.h"
#include "depend/links_probe.h"
#include "messages/table.h"

namespace morvane {

namespace {

// The newest version of the stand-in category that counts as the category it stands in for.
constexpr int STAND_IN_VERSION = 1;
constexpr int NEWEST_STAND_IN_SUBVERSION = 5;

bool is_links_tool_type(std::optional<std::string_view> type) {
  return type == r[LINKS_TOOL_TYPE_1] || type == r[LINKS_TOOL_TYPE_2] ||
         type == r[LINKS_TOOL_TYPE_3] || type == r[LINKS_TOOL_TYPE_4];
}

// Returns the version of a product that has no description of its own category, from the category
// that stands in for it. A stand-in that is the category itself is looked up once more and no
// further.
release stand_in_version(const product* record, std::string_view path,
                         std::optional<std::string_view> type) {
  const std::string_view stand_in = r[CATEGORY_STANDING_IN];
  const release found = stand_in == r[CATEGORY_WITH_STAND_IN]
                            ? described_version(record, path, stand_in, type)
                            : get_version(record, path, stand_in, type);
  const bool counts =
      found.version == STAND_IN_VERSION && found.subversion <= NEWEST_STAND_IN_SUBVERSION;
  return counts ? found : UNKNOWN_RELEASE;
}

}  // namespace

release get_version(const product* record, std::string_view path, std::string_view category,
                    std::optional<std::string_view> type) {
  const release found = described_version(record, path, category, type);
  if (found.version != UNKNOWN_NUMBER) return found;
  if (category == r[CATEGORY_OF_LINKS_TOOL]) {
    return is_links_tool_type(type) ? get_kemo_version(get_links_path("", path)) : found;
  }
  if (category == r[CATEGORY_WITH_STAND_IN]) return stand_in_version(record, path, type);
  return found;
}

}  // namespace morvane
