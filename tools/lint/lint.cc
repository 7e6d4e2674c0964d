#include "lint/lint.h"

#include <string_view>

#include "lint/archives.h"
#include "lint/encoding.h"
#include "lint/names.h"
#include "lint/needs.h"
#include "lint/reading.h"
#include "lint/sense.h"
#include "lint/suppression.h"
#include "platform/input_file.h"
#include "text/white_space.h"

namespace morvane {

namespace {

constexpr std::size_t LONGEST_ALLOWANCE = 4096;

// What is allowed of files that hold no comments, such as archives: lines "FILE ID: REASON".
constexpr std::string_view ALLOWANCES = "lint.allow";

void take_allowance(std::string_view line, const distribution& of, const place_in_file& place,
                    finding_list& findings) {
  const std::string stands_in = of.directory + std::string(ALLOWANCES);
  const std::size_t blank = line.find_first_of(WHITE_SPACE);
  std::string_view id;
  if (blank != std::string_view::npos) {
    const std::size_t begin = line.find_first_not_of(WHITE_SPACE, blank);
    if (begin != std::string_view::npos) id = allowed_id(line.substr(begin));
  }
  if (id.empty()) {
    findings.add("allow-malformed", stands_in, place,
                 "this suppresses nothing: write 'FILE ID: REASON'");
    return;
  }
  allowance allowed;
  allowed.id = id;
  allowed.file = of.directory + std::string(line.substr(0, blank));
  allowed.stands_in = stands_in;
  allowed.place = place;
  findings.allow(std::move(allowed));
}

void take_allowances(const distribution& of, finding_list& findings) {
  const std::string path = of.directory + std::string(ALLOWANCES);
  input_file file(path);
  while (file.peek() != input_file::END) {
    const place_in_file place = file.place();
    std::string line;
    file.read_line(LONGEST_ALLOWANCE, line);
    if (line.ends_with('\n')) line.pop_back();
    const std::size_t begin = line.find_first_not_of(WHITE_SPACE);
    if (begin == std::string::npos || line[begin] == '#') continue;
    take_allowance(std::string_view(line).substr(begin), of, place, findings);
  }
}

}  // namespace

void lint_description(const read_description& description, finding_list& findings) {
  if (description.outcome == read_outcome::MISSING) return;
  check_reading(description, findings);
  if (description.outcome == read_outcome::IMPOSSIBLE) return;
  if (is_of_wide_characters(description.text)) return;
  check_given_names(description, findings);
  check_own_sense(description, findings);
}

void lint_distribution(const distribution& looked_at, finding_list& findings) {
  take_allowances(looked_at, findings);
  for (const distributed_product& product : looked_at.products) {
    lint_description(product.description, findings);
  }
  check_rule_names(looked_at, findings);
  check_common_sense(looked_at, findings);
  check_archives(looked_at, findings);
  check_needs(looked_at, findings);
}

}  // namespace morvane
