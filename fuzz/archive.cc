// morvane-lint on an archive: the input is the archive of a product with a part.
#include "archive/archive_reader.h"
#include "lint/lint.h"
#include "report/report.h"
#include "support/messages.h"
#include "target.h"

using namespace morvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool ready = [] {
    use_test_messages();
    use_scratch_directory();
    write_file("fuzz.descr", "Name = fuzz\nVersion = 1\nTarget = part\nAskAgain = a\n");
    return true;
  }();
  require(ready, "messages and directory are there");
  write_file("fuzz.tar", as_text(data, size));
  const archive_content content = read_archive("fuzz.tar", "install/Makefile");
  require(content.members.size() <= size / 512, "a member takes a block");
  require(!content.wanted || content.wanted->size() <= MOST_CONTENT + 4096, "contents are bounded");

  finding_list list;
  lint_distribution(*load_distribution("."), list);
  const std::vector<finding> findings = list.finish();
  require(!content.fault || !findings.empty(), "a fault is found");
  for (const finding& found : findings) {
    require(!found.file.empty() && is_check(found.id), "a finding is one of the table");
  }
  json_report({"fuzz", "0", CHECKS}, findings);
  return 0;
}
