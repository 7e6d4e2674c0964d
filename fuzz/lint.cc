// morvane-lint on a description: the input is the description.
#include "lint/lint.h"

#include <set>

#include "report/report.h"
#include "support/messages.h"
#include "target.h"

using namespace morvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool ready = [] {
    use_test_messages();
    use_scratch_directory();
    return true;
  }();
  require(ready, "messages and directory are there");
  const std::string_view content = as_text(data, size);
  write_file("fuzz.descr", content);
  const read_description description = load_description(".", "fuzz");
  finding_list list;
  lint_description(description, list);
  const std::vector<finding> findings = list.finish();

  std::size_t lines = 1;
  for (const char c : content) lines += c == '\n' ? 1 : 0;
  std::set<std::size_t> lines_with_findings;
  for (const finding& found : findings) {
    require(found.line >= 1 && found.line <= lines, "a finding stands in the file");
    require(found.column >= 1, "columns count from 1");
    require(is_check(found.id), "a finding is one of the table");
    lines_with_findings.insert(found.line);
  }
  // Whatever the program reports has a finding, in its line or before, which it comes of.
  for (const located_fault& fault : description.faults) {
    require(!lines_with_findings.empty() && *lines_with_findings.begin() <= fault.place.line,
            "a fault is found");
  }
  text_report(findings);
  sarif_report({"fuzz", "0", CHECKS}, findings);
  return 0;
}
