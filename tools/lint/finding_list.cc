#include "lint/finding_list.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "text/white_space.h"

namespace morvane {

namespace {

// The texts of findings that stand for those that are left out.
constexpr std::string_view MORE =
    "there is more to find from here on: mend the above, and look again";

// Removes what is beyond the most findings of a file from sorted `findings`.
std::vector<finding> shortened(std::vector<finding> findings) {
  std::vector<finding> kept;
  std::size_t of_file = 0;
  for (finding& found : findings) {
    of_file = !kept.empty() && kept.back().file == found.file ? of_file + 1 : 1;
    if (of_file <= MOST_FINDINGS_OF_A_FILE) {
      kept.push_back(std::move(found));
    } else if (of_file == MOST_FINDINGS_OF_A_FILE + 1) {
      const report_rule& rule = check_id("findings-left-out").rule();
      found.id = rule.id;
      found.severity = rule.severity;
      found.text = MORE;
      kept.push_back(std::move(found));
    }
  }
  return kept;
}

}  // namespace

void finding_list::add(check_id id, std::string_view file, const place_in_file& place,
                       std::string text) {
  const report_rule& rule = id.rule();
  const std::size_t count = ++counts_[{std::string(file), std::string(rule.id)}];
  if (count == MOST_FINDINGS_OF_A_CHECK + 1) {
    add("findings-left-out", file, place, std::string(MORE));
  }
  if (count > MOST_FINDINGS_OF_A_CHECK) return;
  findings_.push_back({.file = std::string(file),
                       .line = place.line,
                       .column = place.column,
                       .id = std::string(rule.id),
                       .text = std::move(text),
                       .severity = rule.severity});
}

void finding_list::allow(allowance allowed) {
  if (!is_check(allowed.id)) {
    add("allow-unknown", allowed.stands_in, allowed.place,
        "there is no check " + in_quotes(allowed.id) + ": the suppression has no effect");
    return;
  }
  const file_and_check what = {allowed.file, allowed.id};
  allowances_[what].push_back(std::move(allowed));
}

// Of those that begin at or before the finding the last one reaches farthest, but for one that
// holds for the whole file, which stands first.
bool finding_list::is_allowed(const finding& found) {
  const auto same = allowances_.find({found.file, found.id});
  if (same == allowances_.end()) return false;
  std::vector<allowance>& each = same->second;
  const auto behind = std::ranges::upper_bound(each, found.line, {}, &allowance::first);
  if (behind == each.begin()) return false;
  for (allowance* candidate : {&*std::prev(behind), &each.front()}) {
    if (candidate->last < found.line) continue;
    candidate->used = true;
    return true;
  }
  return false;
}

std::vector<finding> finding_list::finish() {
  for (auto& [what, each] : allowances_) {
    std::ranges::sort(each, [](const allowance& a, const allowance& b) {
      return a.first != b.first ? a.first < b.first : a.last > b.last;
    });
  }
  std::erase_if(findings_, [this](const finding& found) { return is_allowed(found); });
  for (const auto& [what, each] : allowances_) {
    for (const allowance& allowed : each) {
      if (allowed.used) continue;
      add("allow-unused", allowed.stands_in, allowed.place,
          "there is no finding " + in_quotes(allowed.id) +
              " here to allow: remove the suppression");
    }
  }
  std::ranges::sort(findings_);
  findings_.erase(std::unique(findings_.begin(), findings_.end()), findings_.end());
  return shortened(std::move(findings_));
}

}  // namespace morvane
