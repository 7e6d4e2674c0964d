#include "depend/requirement.h"

#include <string>

#include "platform/effects.h"
#include "text/format.h"

namespace morvane {

namespace {

// Returns `number`, or `required` and a note in `unknown` where it is unknown.
int known_or(int number, int required, bool& unknown) {
  if (number != UNKNOWN_NUMBER) return number;
  unknown = true;
  return required;
}

// An unknown number counts as the required one, so that only what is known can be too old.
version_check compare(const release& found, const release& required) {
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

bool will_do(version_check version, in_doubt doubt) {
  return version == version_check::SATISFIED ||
         (version == version_check::UNKNOWN && doubt == in_doubt::ACCEPT);
}

}  // namespace

requirement requirement_of(std::string_view category, const type_dep* alternative) {
  requirement wanted;
  wanted.category = category;
  if (alternative == nullptr) return wanted;
  wanted.type = alternative->type.view();
  wanted.minimum = alternative->release;
  wanted.files = required_files(*alternative);
  return wanted;
}

version_check check_version(const product* record, std::optional<std::string_view> category,
                            std::optional<std::string_view> type, const release& required,
                            version_source look_up) {
  if (record == nullptr || !category) return version_check::SATISFIED;
  if (record->category != *category) return version_check::OTHER_CATEGORY;
  if (!type) return version_check::SATISFIED;
  if (record->type != *type) return version_check::OTHER_TYPE;
  return compare(look_up(record, record->path, *category, type), required);
}

std::vector<std::string_view> missing_files(std::string_view path,
                                            std::span<const std::string_view> files) {
  std::vector<std::string_view> missing;
  for (const std::string_view file : files) {
    const bool is_absolute = file.starts_with('/');
    const bool there =
        on_host().exists(is_absolute ? std::string(path) : fill("%s/%s", {path, file}));
    if (!there) missing.push_back(file);
  }
  return missing;
}

verdict examine(const product& candidate, const requirement& wanted, in_doubt doubt,
                version_source look_up) {
  verdict found;
  found.version = check_version(&candidate, wanted.category, wanted.type, wanted.minimum, look_up);
  found.version_will_do = will_do(found.version, doubt);
  if (found.version_will_do && already_installed(candidate)) {
    found.missing_files = missing_files(candidate.path, wanted.files);
  }
  return found;
}

}  // namespace morvane
