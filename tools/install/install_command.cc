#include "install/install_command.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "command/command_line.h"
#include "distribution/distribution.h"
#include "driver/start_up.h"
#include "install/installation.h"
#include "install/plan.h"
#include "install/plan_report.h"
#include "install/run_report.h"
#include "install_makefile/install_makefile.h"
#include "platform/directory_lock.h"
#include "platform/file.h"
#include "receipt/receipt_store.h"
#include "report/finding.h"
#include "text/number.h"

namespace morvane {

namespace {

constexpr std::size_t LONGEST_MAKEFILE = 64UL * 1024 * 1024;
constexpr const char* MAKEFILE = "install.mk";

struct install_options {
  bool plan_only = false;
  bool json = false;
  installation_options installation = {.registry = std::string(REGISTRY)};
};

bool take_format(const std::string& name, install_options& options) {
  options.json = name == "json";
  return options.json || name == "text";
}

bool take_jobs(const std::string& count, std::size_t& jobs) {
  if (!is_digits(count)) return false;
  jobs = static_cast<std::size_t>(number_or_zero(count));
  return jobs > 0;
}

bool take_directory(const std::string& name, std::string& directory) {
  std::error_code error;
  directory = std::filesystem::absolute(name, error).native();
  return !name.empty() && !error;
}

command described_command(install_options& options) {
  installation_options& how = options.installation;
  return {"morvane-install",
          "[ID]...",
          "Shows what make will do on install.mk, and does it product by product.",
          {{"plan", "", "show what would be done, and do nothing",
            [&](const std::string&) { return options.plan_only = true; }},
           {"format", "FORMAT", "of the plan: text or json",
            [&](const std::string& name) { return take_format(name, options); }},
           {"keep-replaced", "DIRECTORY", "copy what is replaced to DIRECTORY before",
            [&](const std::string& name) { return take_directory(name, how.kept); }},
           {"jobs", "N", "install so many products at a time that do not touch each other",
            [&](const std::string& count) { return take_jobs(count, how.jobs); }},
           {"registry", "DIRECTORY", "keep receipts there besides, not in /var/lib/morvane",
            [&](const std::string& name) { return take_directory(name, how.registry); }}}};
}

// As the program does when it starts.
void set_up_process() {
  open_missing_descriptors();
  signal(SIGCHLD, SIG_DFL);
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
}

class install_command {
 public:
  install_command(const command& described, const install_options& options,
                  const std::vector<std::string>& chosen)
      : described_(described), options_(options), chosen_(chosen) {}

  exit_status run() const {
    // Before the makefile is read: nobody writes another one meanwhile.
    if (!options_.plan_only && !lock_current_directory()) {
      complain(described_, OTHER_CONFIGURATOR);
      return exit_status::REFUSED;
    }
    auto makefile = read_makefile();
    if (!makefile || !leave_chosen(*makefile)) return exit_status::WRONG_USE;
    choose_messages(".");  // which have the keywords of descriptions
    install_plan plan = plan_installation(*makefile, options_.installation.registry);
    check_kept(plan);
    const bool shown = print_plan(plan);
    if (plan.is_blocked()) return refuse();
    if (options_.plan_only) return shown ? exit_status::GOOD : exit_status::WRONG_USE;
    return install(plan);
  }

 private:
  std::optional<install_makefile> read_makefile() const {
    const descriptor file = open_for_reading(MAKEFILE);
    struct stat status;
    const bool looked_at = file.is_open() && fstat(file.number(), &status) == 0;
    if (looked_at && static_cast<std::size_t>(status.st_size) > LONGEST_MAKEFILE) errno = EFBIG;
    const bool fits = looked_at && static_cast<std::size_t>(status.st_size) <= LONGEST_MAKEFILE;
    const auto text = fits ? read_rest(file) : std::nullopt;
    if (!text) {
      complain(described_, std::string(MAKEFILE) + ": " + std::strerror(errno));
      return std::nullopt;
    }
    auto read = read_install_makefile(*text);
    if (auto* makefile = std::get_if<install_makefile>(&read)) return std::move(*makefile);
    complain(described_, std::string(MAKEFILE) + ":" + std::to_string(std::get<std::size_t>(read)) +
                             ": not what morvane writes: configure again, or run make on it");
    return std::nullopt;
  }

  // Leaves the products that the command line names, or all. Returns false where it names others.
  bool leave_chosen(install_makefile& makefile) const {
    std::vector<product_facts>& products = makefile.products;
    bool known = true;
    for (const std::string& id : chosen_) {
      if (std::ranges::find(products, id, &product_facts::id) != products.end()) continue;
      complain(described_, printable(id) + ": install.mk installs no such product");
      known = false;
    }
    if (chosen_.empty() || !known) return known;
    std::erase_if(products, [&](const product_facts& each) {
      return std::ranges::find(chosen_, each.id) == chosen_.end();
    });
    return true;
  }

  // Copies of an earlier run are not written over, nor those that others can lead elsewhere.
  void check_kept(install_plan& plan) const {
    const std::string& kept = options_.installation.kept;
    struct stat status;
    if (kept.empty() || (lstat(kept.c_str(), &status) != 0 && errno == ENOENT)) return;
    std::error_code error;
    const bool is_own = S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
                        (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    if (is_own && std::filesystem::is_empty(kept, error) && !error) return;
    plan.findings.push_back({severity::ERROR, "kept-there", "",
                             in_quotes(kept) + " is there, and no empty directory that you "
                                               "alone can write to"});
  }

  bool print_plan(const install_plan& plan) const {
    const bool keeps = !options_.installation.kept.empty();
    const std::string text = options_.json ? plan_json(plan) : plan_text(plan, keeps);
    const bool written =
        std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    if (!written) complain(described_, std::string("standard output: ") + std::strerror(errno));
    return written;
  }

  exit_status refuse() const {
    if (!options_.plan_only) {
      complain(described_, "nothing was installed; when what blocks is mended, type: " +
                               command_to_continue(chosen_));
    }
    return exit_status::REFUSED;
  }

  exit_status install(const install_plan& plan) const {
    const std::string& kept = options_.installation.kept;
    if (!kept.empty() && mkdir(kept.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
      complain(described_, kept + ": " + std::strerror(errno));
      return exit_status::REFUSED;
    }
    run_report report(plan, command_to_continue(chosen_), options_.json ? stderr : stdout);
    const installation_result result = install_products(
        plan, options_.installation,
        {[&](std::size_t product) { report.begins(product); },
         [&](std::size_t product, const product_result& of) { report.ended(product, of); }});
    report.finish(result);
    return result.is_complete() ? exit_status::GOOD : exit_status::FAILED;
  }

  const command& described_;
  const install_options& options_;
  const std::vector<std::string>& chosen_;  // identifiers; none: all
};

}  // namespace

exit_status run_install(int count, char** arguments) {
  set_up_process();
  install_options options;
  const command described = described_command(options);
  const auto parsed = parse_command_line(described, count, arguments);
  if (const auto* status = std::get_if<exit_status>(&parsed)) return *status;
  return install_command(described, options, std::get<std::vector<std::string>>(parsed)).run();
}

}  // namespace morvane
