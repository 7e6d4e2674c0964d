#include "verify/verify_command.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "command/command_line.h"
#include "installed/selection.h"
#include "receipt/receipt_store.h"
#include "report/finding.h"
#include "verify/save.h"
#include "verify/verification.h"
#include "verify/verify_report.h"

namespace morvane {

namespace {

enum class format { TEXT, RPM, JSON };

struct verify_options {
  morvane::format format = format::TEXT;
  bool save = false;
  std::string registry = std::string(REGISTRY);
};

bool take_format(const std::string& name, format& taken) {
  constexpr std::array<std::string_view, 3> NAMES = {"text", "rpm", "json"};
  const auto found = std::ranges::find(NAMES, name);
  taken = static_cast<format>(found - NAMES.begin());
  return found != NAMES.end();
}

command described_command(verify_options& options) {
  return {"morvane-verify",
          "[DIRECTORY | ID | RECEIPT]...",
          "Compares what is installed with what its receipts tell.",
          {{"format", "FORMAT", "text, rpm (a letter for each property) or json",
            [&](const std::string& name) { return take_format(name, options.format); }},
           {"save", "", "first make receipts of what install.mk here installed without any",
            [&](const std::string&) { return options.save = true; }},
           {"registry", "DIRECTORY", "where the host's receipts are: " + std::string(REGISTRY),
            [&](const std::string& directory) {
              options.registry = directory;
              return !directory.empty();
            }}}};
}

std::string formatted(const std::vector<verification>& verified, format wanted) {
  switch (wanted) {
    case format::RPM:
      return rpm_text_of(verified);
    case format::JSON:
      return json_of(verified);
    case format::TEXT:
      break;
  }
  return text_of(verified);
}

// Says on standard error what the report has no place for. Returns whether all is as installed.
bool tell_remarks(const command& described, const verification& verified) {
  const receipt& of = verified.product->content;
  if (!verified.product->trusted) {
    complain(described, printable(verified.product->file) +
                            ": another user can have written it, and let it tell anything");
  }
  if (!of.complete) {
    complain(described,
             printable("'" + of.id + "' in " + of.directory) +
                 ": an installation began since, and did not end well: install it again");
  }
  for (const std::string& fault : verified.faults) {
    complain(described, printable(of.directory + "/" + fault));
  }
  return of.complete && verified.differing.empty() && verified.faults.empty();
}

// Verifies and reports; what cannot be read is said on standard error.
exit_status verify_products(const command& described, const verify_options& options,
                            const std::vector<std::string>& operands) {
  const receipt_store store = load_receipts(options.registry, operands);
  selection selected = select_products(store, operands);
  if (operands.empty() && selected.products.empty()) {
    selected.faults.push_back("there are no receipts in " + options.registry +
                              ": name the directory of a product");
  }
  exit_status status = exit_status::GOOD;
  std::vector<std::string> faults = store.faults;
  faults.insert(faults.end(), selected.faults.begin(), selected.faults.end());
  for (const std::string& fault : faults) complain(described, printable(fault));
  if (!faults.empty()) status = exit_status::WRONG_USE;
  std::vector<verification> verified;
  for (const stored_receipt* product : selected.products) {
    verified.push_back(verify(store, *product));
    if (!tell_remarks(described, verified.back())) status = std::max(status, exit_status::FINDINGS);
  }
  const std::string text = formatted(verified, options.format);
  if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) {
    return status;
  }
  complain(described, std::string("the report cannot be written: ") + std::strerror(errno));
  return exit_status::WRONG_USE;
}

}  // namespace

exit_status run_verify(int count, char** arguments) {
  verify_options options;
  const command described = described_command(options);
  const auto parsed = parse_command_line(described, count, arguments);
  if (const exit_status* ended = std::get_if<exit_status>(&parsed)) return *ended;
  const auto& operands = std::get<std::vector<std::string>>(parsed);
  exit_status saved = exit_status::GOOD;
  if (options.save) {
    saved = save_receipts(described, options.registry, operands);
    if (saved != exit_status::GOOD) return saved;
  }
  return verify_products(described, options, operands);
}

}  // namespace morvane
