#include "lint/finding_list.h"

#include <algorithm>
#include <utility>

#include "text/white_space.h"

namespace morvane {

namespace {

bool allows(const allowance& allowed, const finding& found) {
  return allowed.id == found.id && allowed.file == found.file && found.line >= allowed.first &&
         found.line <= allowed.last;
}

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
      found.text = "there is more to find from here on: mend the above, and look again";
      kept.push_back(std::move(found));
    }
  }
  return kept;
}

}  // namespace

void finding_list::add(check_id id, std::string_view file, const place_in_file& place,
                       std::string text) {
  const report_rule& rule = id.rule();
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
        "there is no check '" + allowed.id + "': the suppression has no effect");
    return;
  }
  allowances_.push_back(std::move(allowed));
}

std::vector<finding> finding_list::finish() {
  std::erase_if(findings_, [this](const finding& found) {
    bool allowed = false;
    for (allowance& each : allowances_) {
      if (!allows(each, found)) continue;
      each.used = true;
      allowed = true;
    }
    return allowed;
  });
  for (const allowance& each : allowances_) {
    if (each.used) continue;
    add("allow-unused", each.stands_in, each.place,
        "there is no finding '" + each.id + "' here to allow: remove the suppression");
  }
  std::ranges::sort(findings_);
  const auto repeated = std::ranges::unique(findings_);
  findings_.erase(repeated.begin(), repeated.end());
  return shortened(std::move(findings_));
}

std::string_view allowed_id(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return "";
  const std::string_view id = text.substr(0, colon);
  const bool has_reason = text.find_first_not_of(WHITE_SPACE, colon + 1) != std::string_view::npos;
  const bool is_word = id.find_first_of(WHITE_SPACE) == std::string_view::npos;
  return has_reason && is_word ? id : "";
}

}  // namespace morvane
