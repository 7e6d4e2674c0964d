#include "report/report.h"

#include <gtest/gtest.h>

#include "report/json.h"

namespace morvane {
namespace {

const finding FOUND = {.file = "a b.descr",
                       .line = 3,
                       .column = 7,
                       .id = "a-rule",
                       .text = "'x\033[1m' \"is\" wrong",
                       .severity = severity::WARNING};

TEST(TextReport, NamesThePlaceTheSeverityAndTheRuleAndEscapesWhatIsNotPrintable) {
  EXPECT_EQ(text_report({{FOUND}}), "a b.descr:3:7: warning: 'x\\033[1m' \"is\" wrong [a-rule]\n");
  EXPECT_EQ(text_report({}), "");
}

TEST(JsonReport, HoldsEachFindingAsAnObject) {
  EXPECT_EQ(json_report({"tool", "1.0", {}}, {{FOUND}}), R"({
  "command": "tool",
  "version": "1.0",
  "findings": [
    {
      "file": "a b.descr",
      "line": 3,
      "column": 7,
      "severity": "warning",
      "id": "a-rule",
      "text": "'x\u001b[1m' \"is\" wrong"
    }
  ]
}
)");
  EXPECT_EQ(json_report({"tool", "1.0", {}}, {}),
            "{\n  \"command\": \"tool\",\n  \"version\": \"1.0\",\n  \"findings\": []\n}\n");
}

std::string fingerprint_of(const finding& found, int which = 1) {
  const std::string report = sarif_report({"tool", "1.0", {}}, {{found, found}});
  std::size_t at = 0;
  for (int i = 0; i < which; ++i) at = report.find("\"finding/v1\": ", at + 1);
  return report.substr(at, report.find('\n', at) - at);
}

TEST(SarifReport, GivesAFingerprintThatDoesNotGoByTheLine) {
  finding moved = FOUND;
  moved.line = 30;
  finding other = FOUND;
  other.text = "another";
  EXPECT_EQ(fingerprint_of(FOUND), fingerprint_of(moved));
  EXPECT_NE(fingerprint_of(FOUND), fingerprint_of(other));
  EXPECT_NE(fingerprint_of(FOUND), fingerprint_of(FOUND, 2));
}

TEST(SarifReport, WritesFilesAsUris) {
  EXPECT_NE(sarif_report({"tool", "1.0", {}}, {{FOUND}}).find("\"uri\": \"a%20b.descr\""),
            std::string::npos);
}

TEST(Findings, AreSortedByFileLineAndColumn) {
  finding later = FOUND;
  later.column = 10;
  EXPECT_LT(FOUND, later);
  later.column = 1;
  later.line = 10;
  EXPECT_LT(FOUND, later);
  later.line = 1;
  later.file = "b";
  EXPECT_LT(FOUND, later);
}

}  // namespace
}  // namespace morvane
