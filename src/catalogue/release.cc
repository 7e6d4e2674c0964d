#include "catalogue/release.h"

namespace morvane {

std::string version_numbers(const release& shown) {
  std::string numbers = std::to_string(shown.version) + "." + std::to_string(shown.subversion);
  if (shown.minorversion > 0) numbers += "." + std::to_string(shown.minorversion);
  if (shown.patch > 0) numbers += ", patch " + std::to_string(shown.patch);
  return numbers;
}

bool is_shown_as_unknown(const release& shown) {
  const bool known =
      shown.version >= 0 && shown.subversion >= 0 && (shown.version > 0 || shown.subversion > 0);
  return !known;
}

}  // namespace morvane
