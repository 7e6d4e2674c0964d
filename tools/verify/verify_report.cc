#include "verify/verify_report.h"

#include <string_view>
#include <utility>

#include "command/command_line.h"
#include "report/finding.h"
#include "report/json.h"

namespace morvane {

namespace {

std::string counted(std::size_t number, const std::string& one) {
  return std::to_string(number) + " " + one + (number == 1 ? "" : "s");
}

std::string what_differs(const verified_path& path) {
  return path.additional ? "additional" : words_of(path.expected, path.found);
}

std::string remarks_on(const verified_path& path) {
  std::string remarks;
  if (!path.of.empty()) remarks += " (as '" + path.of + "' installed it since)";
  if (!path.additional && path.expected.origin == entry_origin::PERHAPS) {
    remarks += " (perhaps not of the product)";
  }
  return remarks;
}

std::string absolute(const verification& of, const verified_path& path) {
  receipt_entry entry;
  entry.path = path.path;
  return absolute_path(of.product->content, entry);
}

std::string head_of(const verification& each) {
  const receipt& of = each.product->content;
  std::string head = of.id + (of.version.empty() ? "" : " " + of.version) + " in " + of.directory;
  head += ": " + counted(each.paths, "path") + ", ";
  std::size_t additional = 0;
  for (const verified_path& path : each.differing) additional += path.additional ? 1 : 0;
  const std::size_t differing = each.differing.size() - additional;
  head += differing == 0 ? "all as installed" : std::to_string(differing) + " not as installed";
  if (additional != 0) head += ", " + std::to_string(additional) + " additional";
  return head;
}

// Returns the letters of the properties that differ, each in its place.
std::string rpm_letters(const verified_path& path) {
  const difference differs = compare(path.expected, path.found);
  const file_status& status = *path.found.status;
  const bool both_files = path.expected.kind == file_kind::FILE && status.kind == file_kind::FILE;
  const bool touched = both_files && differs.content && status.modified != path.expected.modified;
  std::string letters = ".........";
  if (differs.size) letters[0] = 'S';
  if (differs.mode || differs.kind) letters[1] = 'M';
  if (differs.content) letters[2] = '5';
  if (differs.unknown) letters[2] = '?';
  if (differs.target) letters[4] = 'L';
  if (differs.owner) letters[5] = 'U';
  if (differs.group) letters[6] = 'G';
  if (touched) letters[7] = 'T';
  return letters;
}

std::string rpm_line(const verification& of, const verified_path& path) {
  std::string line;
  if (path.additional) {
    line = "additional ";
  } else if (!path.found.status) {
    line = path.found.error == 0 ? "missing    " : "unknown    ";
  } else {
    line = rpm_letters(path) + "  ";
  }
  return line + "  " + printable(absolute(of, path)) + "\n";
}

void add_pair(json_writer& json, std::string_view name, bool differs, const std::string& expected,
              const std::string& found) {
  if (!differs) return;
  json.key(name);
  json.begin_object();
  json.member("expected", expected);
  json.member("found", found);
  json.end_object();
}

std::string state_of(const verified_path& path) {
  if (path.additional) return "additional";
  if (path.found.status) return "differs";
  return path.found.error == 0 ? "missing" : "unknown";
}

std::string octal(unsigned mode) {
  std::string digits;
  for (; mode != 0 || digits.empty(); mode /= 8)
    digits.insert(0, 1, static_cast<char>('0' + mode % 8));
  return digits;
}

void add_path(json_writer& json, const verification& of, const verified_path& path) {
  json.begin_object();
  json.member("path", absolute(of, path));
  json.member("state", state_of(path));
  json.member("text", what_differs(path));
  if (!path.of.empty()) json.member("as_installed_by", path.of);
  if (!path.additional) {
    json.flag("certain", path.expected.origin != entry_origin::PERHAPS);
    if (path.found.status) {
      const receipt_entry& expected = path.expected;
      const file_status& found = *path.found.status;
      const difference differs = compare(expected, path.found);
      add_pair(json, "kind", differs.kind, std::string(kind_name(expected.kind)),
               std::string(kind_name(found.kind)));
      add_pair(json, "size", differs.size, std::to_string(expected.size),
               std::to_string(found.size));
      add_pair(json, "sha256", differs.content && path.found.digest, expected.digest,
               path.found.digest.value_or(""));
      add_pair(json, "mode", differs.mode, octal(expected.mode), octal(found.mode));
      add_pair(json, "owner", differs.owner, std::to_string(expected.owner),
               std::to_string(found.owner));
      add_pair(json, "group", differs.group, std::to_string(expected.group),
               std::to_string(found.group));
      add_pair(json, "target", differs.target, expected.target, found.target);
    }
  }
  json.end_object();
}

}  // namespace

std::string text_of(const std::vector<verification>& verified) {
  std::string text;
  for (const verification& each : verified) {
    text += printable(head_of(each)) + "\n";
    for (const verified_path& path : each.differing) {
      text += "  " + printable(path.path + ": " + what_differs(path) + remarks_on(path)) + "\n";
    }
  }
  return text;
}

std::string rpm_text_of(const std::vector<verification>& verified) {
  std::string text;
  for (const verification& each : verified) {
    for (const verified_path& path : each.differing) text += rpm_line(each, path);
  }
  return text;
}

std::string json_of(const std::vector<verification>& verified) {
  json_writer json;
  json.begin_object();
  json.member("command", "morvane-verify");
  json.member("version", command_version());
  json.key("products");
  json.begin_array();
  for (const verification& each : verified) {
    const receipt& of = each.product->content;
    json.begin_object();
    json.member("product", of.id);
    json.member("version", of.version);
    json.member("directory", of.directory);
    json.member("receipt", each.product->file);
    json.flag("made_afterwards", of.made_afterwards);
    json.flag("complete", of.complete);
    json.member("paths", each.paths);
    json.key("differing");
    json.begin_array();
    for (const verified_path& path : each.differing) add_path(json, each, path);
    json.end_array();
    json.end_object();
  }
  json.end_array();
  json.end_object();
  return json.text();
}

}  // namespace morvane
