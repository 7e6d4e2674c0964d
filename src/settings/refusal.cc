#include "settings/refusal.h"

#include "platform/diagnostic.h"
#include "text/format.h"
#include "text/quoting.h"
#include "version/version.h"

namespace morvane {

namespace {

bool is_invalid(const product* record) {
  return record == nullptr || is_free(*record);
}

}  // namespace

bool refuse_invalid_product(const product* record, std::string_view operation) {
  if (!is_invalid(record)) return false;
  diagnose(fill("%s : %s : error : invalid product\n", {PROGRAM_NAME, operation}));
  return true;
}

bool refuse_product_mismatch(const product* record, std::string_view operation) {
  if (!is_invalid(record)) return false;
  diagnose_error(fill("product pointer mismatch in '%s'", {operation}));
  return true;
}

bool refuse_special_characters(std::string_view kind, std::string_view name) {
  if (!holds_special_characters(name)) return false;
  diagnose_error(
      fill("%s '%s' holds characters that make or the shell would interpret", {kind, name}));
  return true;
}

}  // namespace morvane
