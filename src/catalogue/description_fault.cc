#include "catalogue/description_fault.h"

#include "catalogue/description_reader.h"
#include "catalogue/product_files.h"
#include "messages/table.h"
#include "platform/diagnostic.h"
#include "text/format.h"
#include "version/version.h"

namespace morvane {

namespace {

void diagnose_rejection(const description_fault& fault, std::string_view why) {
  diagnose(
      fill("%s : Error in %s%s : %s\n", {PROGRAM_NAME, fault.identifier, DESCRIPTION_ENDING, why}));
}

}  // namespace

// The misspelt words stay: the manual pages list these lines for whoever searches them.
void diagnose_fault(const description_fault& fault) {
  switch (fault.kind) {
    case fault_kind::UNKNOWN_KEYWORD:
      diagnose(fill("%s : unkown keyword '%s' found in file '%s'\n",
                    {PROGRAM_NAME, fault.keyword, fault.path}));
      return;
    case fault_kind::NO_ROOM_FOR_TARGET:
      diagnose_rejection(fault, fill("%s ignored (array overflow)!", {fault.keyword}));
      return;
    case fault_kind::OUTSIDE_TARGET:
      diagnose_rejection(fault, fill("%s ignored !", {fault.keyword}));
      return;
    case fault_kind::OUTSIDE_NEED: {
      // The report on the proposed directory has always named its neighbour, the patch level.
      const std::string_view named =
          fault.entry == KEYWORD_NEEDS_PATH ? r[KEYWORD_NEEDS_PATCH] : fault.keyword;
      diagnose_rejection(fault, fill("array overflow, or %s occured before %s or %s!",
                                     {named, r[KEYWORD_NEEDS_CATEGORY], r[KEYWORD_TARGET]}));
      return;
    }
    case fault_kind::VALUE_TOO_LONG:
      diagnose_warning(fill("read line to long (max=%d)", {int{LONGEST_VALUE}}));
      return;
    case fault_kind::QUOTE_NOT_CLOSED:
      diagnose_warning("read line contains only one '\"'");
      return;
    case fault_kind::CANNOT_BE_READ:
      diagnose_warning(fill("description '%s' cannot be read", {fault.path}));
  }
}

}  // namespace morvane
