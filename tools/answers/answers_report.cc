#include "answers/answers_report.h"

#include <algorithm>

#include "report/json.h"
#include "text/format.h"

namespace morvane {

namespace {

// What the program said may hold anything; a terminal is not to follow it.
std::string printable(std::string_view text) {
  std::string shown(text);
  for (char& c : shown) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = '?';
  }
  return shown;
}

std::string finding_line(std::string_view file, const answer_finding& found) {
  std::string line(file);
  if (found.line > 0) line += fill(":%d", {found.line});
  line += ":";
  if (!found.section.empty()) line += fill(" [%s]", {found.section});
  if (!found.name.empty()) line += fill(" %s", {found.name});
  line += fill("%s %s", {found.section.empty() && found.name.empty() ? "" : ":", found.text});
  if (!found.proposal.empty()) line += fill("; proposal: %s", {found.proposal});
  return printable(line) + "\n";
}

std::string_view status_word(exit_status status) {
  switch (status) {
    case exit_status::GOOD:
      return "good";
    case exit_status::REFUSED:
      return "refused";
    default:
      return "failed";
  }
}

void add_plan(json_writer& json, const std::vector<planned_product>& plan) {
  json.key("products");
  json.begin_array();
  for (const planned_product& each : plan) {
    json.begin_object();
    json.member("id", each.id);
    json.member("version", each.version);
    json.member("directory", each.directory);
    json.member("owner", each.owner);
    json.member("group", each.group);
    json.member("access", each.other_access ? "yes" : "no");
    json.member("state", each.again ? "again" : "new");
    json.key("parts");
    json.begin_array();
    for (const planned_part& part : each.parts) {
      json.begin_object();
      json.member("name", part.name);
      json.key("needs");
      json.begin_array();
      for (const planned_need& need : part.needs) {
        json.begin_object();
        json.member("category", need.category);
        json.member("supplier", need.supplier);
        json.end_object();
      }
      json.end_array();
      json.end_object();
    }
    json.end_array();
    json.end_object();
  }
  json.end_array();
}

void add_deeds(json_writer& json, const rehearsed_deeds& deeds) {
  json.key("directories");
  json.begin_array();
  for (const std::string& each : deeds.directories) json.value(each);
  json.end_array();
  json.key("files");
  json.begin_array();
  for (const auto& [name, content] : deeds.files) {
    if (!content) continue;
    json.begin_object();
    json.member("name", name);
    json.member("content", *content);
    json.end_object();
  }
  json.end_array();
}

void add_findings(json_writer& json, const std::vector<answer_finding>& findings) {
  json.key("findings");
  json.begin_array();
  for (const answer_finding& each : findings) {
    json.begin_object();
    json.member("line", each.line);
    json.member("trouble", trouble_word(each.trouble));
    json.member("section", each.section);
    json.member("name", each.name);
    json.member("text", each.text);
    json.member("proposal", each.proposal);
    json.end_object();
  }
  json.end_array();
}

}  // namespace

std::string findings_text(std::string_view file, std::vector<answer_finding> findings) {
  std::ranges::stable_sort(findings, {}, &answer_finding::line);
  std::string text;
  for (const answer_finding& each : findings) text += finding_line(file, each);
  return text;
}

std::string answers_json(std::string_view file, const rehearsal& seen, exit_status status,
                         std::string_view why) {
  json_writer json;
  json.begin_object();
  json.member("file", file);
  json.member("status", status_word(status));
  json.member("why", why);
  add_findings(json, seen.findings);
  add_plan(json, seen.plan);
  add_deeds(json, seen.deeds);
  json.end_object();
  return json.text();
}

}  // namespace morvane
