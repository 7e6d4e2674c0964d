// Findings as text, as JSON, and as SARIF, which code-hosting sites show beside the lines.
#ifndef MORVANE_REPORT_REPORT_H
#define MORVANE_REPORT_REPORT_H

#include <span>
#include <string>
#include <string_view>

#include "report/finding.h"

namespace morvane {

// A kind of finding.
struct report_rule {
  std::string_view id;
  morvane::severity severity;
  std::string_view summary;
  std::string_view explanation;
};

// Who reports.
struct reporter {
  std::string_view command;
  std::string_view version;
  std::span<const report_rule> rules;
};

// Returns a line for each finding: FILE:LINE:COLUMN: SEVERITY: TEXT [ID].
std::string text_report(std::span<const finding> findings);

// Returns an object whose member "findings" is an array of objects.
std::string json_report(const reporter& by, std::span<const finding> findings);

// Returns a log of SARIF 2.1.0 with one run. Each result has a fingerprint that stays the same when
// lines move.
std::string sarif_report(const reporter& by, std::span<const finding> findings);

}  // namespace morvane

#endif  // MORVANE_REPORT_REPORT_H
