#include "depend/installed_version.h"

#include <algorithm>
#include <string>

#include "catalogue/description_parser.h"
#include "catalogue/product_files.h"
#include "depend/links_probe.h"
#include "messages/table.h"
#include "platform/shell.h"
#include "text/format.h"

namespace morvane {

namespace {

// The newest version of the stand-in category that counts as the category it stands in for.
constexpr int STAND_IN_VERSION = 1;
constexpr int NEWEST_STAND_IN_SUBVERSION = 5;

bool is_links_tool_type(std::optional<std::string_view> type) {
  return type == r[LINKS_TOOL_TYPE_1] || type == r[LINKS_TOOL_TYPE_2] ||
         type == r[LINKS_TOOL_TYPE_3] || type == r[LINKS_TOOL_TYPE_4];
}

// Returns the highest version among the descriptions in `path`.
release highest_described_version(std::string_view path, std::string_view category,
                                  std::optional<std::string_view> type) {
  release highest = UNKNOWN_RELEASE;
  const std::string descriptions = installed_products_directory(path);
  for (const std::string& identifier : descriptions_in(descriptions).value_or(identifiers())) {
    product described;
    read_product(descriptions, identifier, described);
    if (described.category != category || (type && described.type != *type)) continue;
    highest = std::max(highest, described.release);
  }
  return highest;
}

// As `get_version`, without the fallbacks.
release described_version(const product* record, std::string_view path, std::string_view category,
                          std::optional<std::string_view> type) {
  if (record != nullptr && on_host_after_run(*record) && !record->id.empty()) {
    return record->release;
  }
  return highest_described_version(path, category, type);
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

// Returns `number`, or `required` and a note in `unknown` where it is unknown.
int known_or(int number, int required, bool& unknown) {
  if (number != UNKNOWN_NUMBER) return number;
  unknown = true;
  return required;
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

version_check check_version(const product* record, std::optional<std::string_view> category,
                            std::optional<std::string_view> type, const release& required) {
  if (record == nullptr || !category) return version_check::SATISFIED;
  if (record->category != *category) return version_check::OTHER_CATEGORY;
  if (!type) return version_check::SATISFIED;
  if (record->type != *type) return version_check::OTHER_TYPE;

  const release found = get_version(record, record->path, *category, type);
  bool unknown = false;
  const release installed = {
      known_or(found.version, required.version, unknown),
      known_or(found.subversion, required.subversion, unknown),
      known_or(found.minorversion, required.minorversion, unknown),
      known_or(found.patch, required.patch, unknown),
  };
  if (installed < required) return version_check::TOO_OLD;
  return unknown ? version_check::UNKNOWN : version_check::SATISFIED;
}

std::vector<std::string_view> missing_files(std::string_view path,
                                            std::span<const std::string_view> files) {
  std::vector<std::string_view> missing;
  for (const std::string_view file : files) {
    if (!exists(file.starts_with('/') ? std::string(path) : fill("%s/%s", {path, file}))) {
      missing.push_back(file);
    }
  }
  return missing;
}

}  // namespace morvane
