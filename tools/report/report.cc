#include "report/report.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <map>

#include "report/json.h"

namespace morvane {

namespace {

// Returns a path as a URI: relative as it is, so that it holds wherever the tree lies.
std::string uri(std::string_view path) {
  constexpr std::string_view PLAIN =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  std::string text = path.starts_with('/') ? "file://" : "";
  for (const char c : path) {
    if (PLAIN.find(c) != std::string_view::npos) {
      text += c;
    } else {
      char escape[4];
      std::snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned>(c) & 0xffU);
      text += escape;
    }
  }
  return text;
}

// Returns the FNV-1a hash of `text` as sixteen digits.
std::string fingerprint(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  char digits[17];
  std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
  return digits;
}

void write_message(json_writer& json, std::string_view key, std::string_view text) {
  json.key(key);
  json.begin_object();
  json.member("text", text);
  json.end_object();
}

void write_rules(json_writer& json, const reporter& by) {
  json.key("rules");
  json.begin_array();
  for (const report_rule& rule : by.rules) {
    json.begin_object();
    json.member("id", rule.id);
    write_message(json, "shortDescription", rule.summary);
    write_message(json, "fullDescription", rule.explanation);
    json.key("defaultConfiguration");
    json.begin_object();
    json.member("level", severity_name(rule.severity));
    json.end_object();
    json.end_object();
  }
  json.end_array();
}

void write_driver(json_writer& json, const reporter& by) {
  json.key("tool");
  json.begin_object();
  json.key("driver");
  json.begin_object();
  json.member("name", by.command);
  json.member("version", by.version);
  write_rules(json, by);
  json.end_object();
  json.end_object();
}

void write_location(json_writer& json, const finding& found) {
  json.begin_object();
  json.key("physicalLocation");
  json.begin_object();
  json.key("artifactLocation");
  json.begin_object();
  json.member("uri", uri(found.file));
  json.end_object();
  json.key("region");
  json.begin_object();
  json.member("startLine", found.line);
  json.member("startColumn", found.column);
  json.end_object();
  json.end_object();
  json.end_object();
}

void write_result(json_writer& json, const reporter& by, const finding& found,
                  const std::string& mark) {
  const auto rule = std::ranges::find(by.rules, found.id, &report_rule::id);
  json.begin_object();
  json.member("ruleId", found.id);
  json.member("ruleIndex", static_cast<std::size_t>(rule - by.rules.begin()));
  json.member("level", severity_name(found.severity));
  write_message(json, "message", found.text);
  json.key("locations");
  json.begin_array();
  write_location(json, found);
  json.end_array();
  json.key("partialFingerprints");
  json.begin_object();
  json.member("finding/v1", fingerprint(mark));
  json.end_object();
  json.end_object();
}

}  // namespace

std::string text_report(std::span<const finding> findings) {
  std::string text;
  for (const finding& found : findings) {
    text += printable(found.file) + ":" + std::to_string(found.line) + ":" +
            std::to_string(found.column) + ": " + std::string(severity_name(found.severity)) +
            ": " + printable(found.text) + " [" + found.id + "]\n";
  }
  return text;
}

std::string json_report(const reporter& by, std::span<const finding> findings) {
  json_writer json;
  json.begin_object();
  json.member("command", by.command);
  json.member("version", by.version);
  json.key("findings");
  json.begin_array();
  for (const finding& found : findings) {
    json.begin_object();
    json.member("file", found.file);
    json.member("line", found.line);
    json.member("column", found.column);
    json.member("severity", severity_name(found.severity));
    json.member("id", found.id);
    json.member("text", found.text);
    json.end_object();
  }
  json.end_array();
  json.end_object();
  return json.text();
}

std::string sarif_report(const reporter& by, std::span<const finding> findings) {
  json_writer json;
  json.begin_object();
  json.member("$schema", "https://json.schemastore.org/sarif-2.1.0.json");
  json.member("version", "2.1.0");
  json.key("runs");
  json.begin_array();
  json.begin_object();
  write_driver(json, by);
  json.key("results");
  json.begin_array();
  std::map<std::string, int> seen;  // findings that are alike are told apart by their order
  for (const finding& found : findings) {
    const std::string mark = found.id + "\n" + found.file + "\n" + found.text;
    write_result(json, by, found, mark + "\n" + std::to_string(seen[mark]++));
  }
  json.end_array();
  json.end_object();
  json.end_array();
  json.end_object();
  return json.text();
}

}  // namespace morvane
