// What an archive holds, beside what lies where it is to be extracted.
#ifndef MORVANE_INSTALL_ARCHIVED_CONTENTS_H
#define MORVANE_INSTALL_ARCHIVED_CONTENTS_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "archive/archive_contents.h"
#include "archive/archive_reader.h"

namespace morvane {

class archived_contents {
 public:
  // The archive `file`, which has `members`; these live as long.
  archived_contents(std::string file, const std::vector<archive_member>& members)
      : file_(std::move(file)), members_(members) {}

  // Tells whether what lies at `path` has the kind and the content of `member`, whatever its owner,
  // group, mode and time. The archive is read once, when a file of the same size is met.
  bool lie_at(const std::string& path, const archive_member& member);

 private:
  bool is_same_file(const std::string& path, const archive_member& member);

  const std::string file_;
  const std::vector<archive_member>& members_;
  bool read_ = false;
  std::optional<std::vector<member_content>> contents_;
};

}  // namespace morvane

#endif  // MORVANE_INSTALL_ARCHIVED_CONTENTS_H
