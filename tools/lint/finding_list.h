// The findings of a run, and what is allowed.
#ifndef MORVANE_LINT_FINDING_LIST_H
#define MORVANE_LINT_FINDING_LIST_H

#include <cstddef>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lint/check_table.h"
#include "platform/input_file.h"
#include "report/finding.h"

namespace morvane {

// More findings of one file are not shown, and more of one check in it are not kept.
inline constexpr std::size_t MOST_FINDINGS_OF_A_FILE = 200;
inline constexpr std::size_t MOST_FINDINGS_OF_A_CHECK = 1000;

// The place of what concerns a whole file.
inline constexpr place_in_file WHOLE_FILE;

// Takes out the findings of check `id` in the lines `first` to `last` of `file`.
struct allowance {
  std::string id;
  std::string file;
  std::size_t first = 1;
  std::size_t last = std::numeric_limits<std::size_t>::max();
  std::string stands_in;  // the file
  place_in_file place;
  bool used = false;
};

class finding_list {
 public:
  void add(check_id id, std::string_view file, const place_in_file& place, std::string text);

  // An allowance of a check that there is none of is a finding.
  void allow(allowance allowed);

  // Returns what is not allowed, sorted; an allowance that was not needed is a finding.
  std::vector<finding> finish();

 private:
  using file_and_check = std::pair<std::string, std::string>;

  bool is_allowed(const finding& found);

  std::vector<finding> findings_;
  std::map<file_and_check, std::size_t> counts_;
  std::map<file_and_check, std::vector<allowance>> allowances_;
};

}  // namespace morvane

#endif  // MORVANE_LINT_FINDING_LIST_H
