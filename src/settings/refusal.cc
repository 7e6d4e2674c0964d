#include "settings/refusal.h"

#include "platform/diagnostic.h"
#include "text/format.h"
#include "text/quoting.h"
#include "version/version.h"

namespace morvane {

bool refuse_invalid_product(const product* record, std::string_view operation) {
  if (record != nullptr && !is_free(*record)) return false;
  diagnose(fill("%s : %s : error : invalid product\n", {PROGRAM_NAME, operation}));
  return true;
}

bool refuse_special_characters(std::string_view kind, std::string_view name) {
  if (!holds_special_characters(name)) return false;
  diagnose_error(
      fill("%s '%s' holds characters that make or the shell would interpret", {kind, name}));
  return true;
}

}  // namespace morvane
