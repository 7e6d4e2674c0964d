#include "lint/checked_archive.h"

#include "lint/member_checks.h"
#include "report/finding.h"

namespace morvane {

namespace {

using std::string;

void report_fault(const string& file, const archive_content& content, finding_list& findings) {
  const auto add = [&](check_id id, const string& text) {
    findings.add(id, file, WHOLE_FILE, text);
  };
  switch (*content.fault) {
    case archive_fault::CANNOT_BE_OPENED:
      add("archive-unreadable", "the archive cannot be opened: " + content.reason);
      break;
    case archive_fault::EMPTY_FILE:
      add("archive-empty", "the file is empty, for which the installation fails");
      break;
    case archive_fault::COMPRESSED:
      add("archive-compressed",
          "the archive is compressed with " + content.reason + ": unpack it first");
      break;
    case archive_fault::NOT_READABLE:
      add("archive-unreadable",
          "this is no tar archive that can be read: " + content.reason + "; pack it again");
      break;
    case archive_fault::NO_END:
      add("archive-unreadable", "the archive has no end, and may be cut off: pack it again");
      break;
    case archive_fault::TOO_MANY:
      add("archive-names",
          "it holds more names than any command can take: the rest was not "
          "looked at");
      break;
  }
}

}  // namespace

archive_content read_checked_archive(const string& identifier, const string& file,
                                     tar_listing& listing, finding_list& findings) {
  archive_content content = read_archive(file, "install/Makefile");
  if (content.fault) report_fault(file, content, findings);
  check_members(identifier, file, content, findings);
  if (content.fault) return content;
  if (const string difference = listing.difference_from(content.members); !difference.empty()) {
    findings.add(
        "archive-ambiguous", file, WHOLE_FILE,
        "the archive can be read in two ways: " + printable(difference) + "; pack it again");
  }
  if (content.members.empty()) {
    findings.add("archive-empty", file, WHOLE_FILE,
                 "the archive holds nothing, for which the installation fails");
  }
  return content;
}

}  // namespace morvane
