#include "lint/lint_command.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "catalogue/product_files.h"
#include "command/command_line.h"
#include "distribution/distribution.h"
#include "lint/check_table.h"
#include "lint/finding_list.h"
#include "lint/lint.h"
#include "lint/message_checks.h"
#include "lint/own_messages.h"
#include "lint/translation_checks.h"
#include "report/report.h"

namespace morvane {

namespace {

constexpr std::string_view MESSAGES_ENDING = ".rsc";
const std::string MESSAGE_FILE = "morvane.rsc";

enum class format { TEXT, JSON, SARIF };

struct lint_options {
  morvane::format format = format::TEXT;
  severity fail_on = severity::WARNING;
  std::vector<std::string> translations;
  std::string explained;
};

bool take_format(const std::string& name, format& taken) {
  const std::vector<std::string> names = {"text", "json", "sarif"};
  const auto found = std::ranges::find(names, name);
  taken = static_cast<format>(found - names.begin());
  return found != names.end();
}

bool take_severity(const std::string& name, severity& taken) {
  for (const severity each : {severity::NOTE, severity::WARNING, severity::ERROR}) {
    if (name != severity_name(each)) continue;
    taken = each;
    return true;
  }
  return false;
}

command described_command(lint_options& options) {
  return {"morvane-lint",
          "[DIRECTORY | ID.descr | FILE.rsc]...",
          "Says what is wrong in a distribution before an operator meets it.",
          {{"format", "FORMAT", "text, json or sarif",
            [&](const std::string& name) { return take_format(name, options.format); }},
           {"fail-on", "SEVERITY", "the least that gives status 1: error, warning (default), note",
            [&](const std::string& name) { return take_severity(name, options.fail_on); }},
           {"translation", "FILE", "look at a translation of the messages as well",
            [&](const std::string& file) {
              options.translations.push_back(file);
              return true;
            }},
           {"explain", "ID", "explain a check", [&](const std::string& id) {
              options.explained = id;
              return is_check(id);
            }}}};
}

// Prints a paragraph in lines of at most 79 characters.
void print_paragraph(std::string_view text) {
  constexpr std::size_t WIDTH = 79;
  while (text.size() > WIDTH) {
    const std::size_t blank = text.rfind(' ', WIDTH);
    std::printf("%s\n", std::string(text.substr(0, blank)).c_str());
    text.remove_prefix(blank + 1);
  }
  std::printf("%s\n", std::string(text).c_str());
}

exit_status explain(const std::string& id) {
  const report_rule& rule = CHECKS[row_of(id)];
  std::printf("%s (%s)\n", id.c_str(), std::string(severity_name(rule.severity)).c_str());
  print_paragraph(rule.summary);
  std::printf("\n");
  print_paragraph(rule.explanation);
  return exit_status::GOOD;
}

bool is_directory(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Looks at a message file; returns why that is not possible.
std::string lint_messages(const std::string& file, finding_list& findings) {
  return check_messages(file, findings) ? "" : "cannot be read";
}

// Looks at a translation of the messages that the command came with.
std::string lint_translation(const std::string& file, finding_list& findings) {
  const std::optional<std::string> original = own_message_file();
  if (!original) return "there is no message file beside the command to compare with";
  const bool read = check_messages(file, findings) && check_translation(file, *original, findings);
  return read ? "" : "cannot be read";
}

// Looks at what an operand names; returns why that is not possible, empty where it was.
std::string lint_operand(const std::string& operand, finding_list& findings) {
  struct stat status;
  if (stat(operand.c_str(), &status) != 0) return std::strerror(errno);
  const std::size_t slash = operand.rfind('/');
  const bool directory = is_directory(operand);
  const std::string holding = slash == std::string::npos ? "." : operand.substr(0, slash + 1);
  const std::string name = slash == std::string::npos ? operand : operand.substr(slash + 1);
  if (!directory && name.ends_with(MESSAGES_ENDING)) return lint_messages(operand, findings);
  if (!directory && !name.ends_with(DESCRIPTION_ENDING)) {
    return "is neither a directory, a description, ID.descr, nor a message file, FILE.rsc";
  }
  if (!choose_messages(directory ? operand : holding) || !use_keywords()) {
    return "there is no message file";
  }
  if (directory) {
    const std::optional<distribution> loaded = load_distribution(operand);
    if (!loaded) return std::strerror(errno);
    lint_distribution(*loaded, findings);
    const std::string messages = loaded->directory + MESSAGE_FILE;
    if (std::ranges::binary_search(loaded->files, MESSAGE_FILE)) {
      const std::string why = lint_messages(messages, findings);
      return why.empty() ? "" : "its " + std::string(MESSAGE_FILE) + " " + why;
    }
    if (loaded->products.empty()) return "holds neither products nor messages";
  } else {
    lint_description(
        load_description(holding, name.substr(0, name.size() - DESCRIPTION_ENDING.size())),
        findings);
  }
  return "";
}

std::string report_of(format wanted, std::span<const finding> findings) {
  const reporter by = {"morvane-lint", command_version(), CHECKS};
  switch (wanted) {
    case format::JSON:
      return json_report(by, findings);
    case format::SARIF:
      return sarif_report(by, findings);
    case format::TEXT:
      break;
  }
  return text_report(findings);
}

// Names in archives are UTF-8, whatever the operator's terminal shows.
void use_utf8_names() {
  std::setlocale(LC_CTYPE, "C.UTF-8");
}

}  // namespace

exit_status run_lint(int count, char** arguments) {
  use_utf8_names();
  lint_options options;
  const command described = described_command(options);
  const auto parsed = parse_command_line(described, count, arguments);
  if (const exit_status* ended = std::get_if<exit_status>(&parsed)) return *ended;
  if (!options.explained.empty()) return explain(options.explained);
  auto operands = std::get<std::vector<std::string>>(parsed);
  if (operands.empty()) operands.emplace_back(".");

  finding_list findings;
  bool unreadable = false;
  const auto note = [&](const std::string& name, const std::string& why) {
    if (why.empty()) return;
    complain(described, printable(name) + ": " + why);
    unreadable = true;
  };
  for (const std::string& operand : operands) note(operand, lint_operand(operand, findings));
  for (const std::string& file : options.translations) note(file, lint_translation(file, findings));
  const std::vector<finding> found = findings.finish();
  const std::string report = report_of(options.format, found);
  const bool written = std::fwrite(report.data(), 1, report.size(), stdout) == report.size() &&
                       std::fflush(stdout) == 0;
  if (!written) complain(described, std::string("the report: ") + std::strerror(errno));
  if (unreadable || !written) return exit_status::WRONG_USE;
  const bool fails = std::ranges::any_of(
      found, [&](const finding& each) { return each.severity >= options.fail_on; });
  return fails ? exit_status::FINDINGS : exit_status::GOOD;
}

}  // namespace morvane
