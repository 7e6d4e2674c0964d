#include "remove/remove_command.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "command/command_line.h"
#include "installed/selection.h"
#include "receipt/receipt_store.h"
#include "remove/dependents.h"
#include "remove/removal.h"
#include "remove/remove_report.h"
#include "remove/remover.h"
#include "report/finding.h"

namespace morvane {

namespace {

struct remove_options {
  bool plan = false;
  bool yes = false;
  bool json = false;
  std::string keep_in;
  std::vector<std::string> searched;
  std::string registry = std::string(REGISTRY);
};

command described_command(remove_options& options) {
  const auto flag = [](bool& taken) {
    return [&taken](const std::string&) { return taken = true; };
  };
  return {"morvane-remove",
          "ID | DIRECTORY | RECEIPT...",
          "Takes products away: what their receipts name and nobody changed.",
          {{"plan", "", "only say what would be done", flag(options.plan)},
           {"yes", "", "do it without asking", flag(options.yes)},
           {"format", "FORMAT", "text or json, with --plan or --yes",
            [&](const std::string& name) {
              options.json = name == "json";
              return options.json || name == "text";
            }},
           {"keep-in", "DIRECTORY", "move changed files there, instead of leaving them",
            [&](const std::string& directory) {
              options.keep_in = directory;
              return !directory.empty();
            }},
           {"search", "DIRECTORY", "look there, too, for products that need one of them",
            [&](const std::string& directory) {
              options.searched.push_back(directory);
              return !directory.empty();
            }},
           {"registry", "DIRECTORY", "where the host's receipts are: " + std::string(REGISTRY),
            [&](const std::string& directory) {
              options.registry = directory;
              return !directory.empty();
            }}}};
}

// Removes what a command line names.
class remove_run {
 public:
  remove_run(const command& described, const remove_options& options)
      : described_(described), options_(options) {}

  exit_status run(const std::vector<std::string>& operands) {
    if (!load(operands)) return exit_status::WRONG_USE;
    if (is_refused()) return exit_status::REFUSED;
    make_plans();
    if (is_unclear()) return exit_status::REFUSED;
    const bool all_goes = show_plans();
    if (std::fflush(stdout) != 0) {
      complain(described_,
               std::string("what is to be done cannot be told: ") + std::strerror(errno));
      return exit_status::REFUSED;
    }
    if (options_.plan) return all_goes ? exit_status::GOOD : exit_status::FINDINGS;
    if (!options_.yes && !operator_agrees()) return exit_status::REFUSED;
    return act(all_goes);
  }

 private:
  bool load(const std::vector<std::string>& operands) {
    store_ = load_receipts(options_.registry, operands);
    for (const std::string& directory : options_.searched) {
      if (add_products_below(store_, directory)) continue;
      complain(described_, printable(directory) + ": " + std::strerror(errno));
      return false;
    }
    std::set<std::string> directories;
    for (const stored_receipt& stored : store_.receipts) {
      directories.insert(stored.content.directory);
    }
    for (const std::string& directory : directories) add_settings_in(store_, directory);
    for (const std::string& fault : store_.faults) complain(described_, printable(fault));

    if (!store_.complete) return false;
    const selection selected = select_products(store_, operands);
    for (const std::string& fault : selected.faults) complain(described_, fault);
    products_ = in_order(selected.products);
    for (const stored_receipt* product : products_) removed_.insert(&product->content);
    return selected.faults.empty();
  }

  bool is_refused() const {
    bool refused = false;
    for (const stored_receipt* product : products_) {
      const std::string file = printable(product->file);
      if (!product->trusted) {
        complain(described_, file + ": another user can have written it");
        refused = true;
      } else if (product->registered && access(options_.registry.c_str(), W_OK) != 0) {
        complain(described_, file + ": cannot be removed: " + std::strerror(errno));
        refused = true;
      }
    }
    for (const std::string& line : who_needs(store_, removed_)) {
      complain(described_, printable(line));
      refused = true;
    }
    if (refused) complain(described_, "nothing was removed");
    return refused;
  }

  void make_plans() {
    for (const stored_receipt* product : products_) {
      plans_.push_back(plan_removal(store_, *product, removed_));
    }
  }

  bool is_unclear() const {
    bool unclear = false;
    for (const removal& planned : plans_) {
      for (const std::string& fault : planned.faults) {
        complain(described_, printable(planned.product->content.id + ": " + fault));
        unclear = true;
      }
    }
    if (unclear) complain(described_, "nothing was removed");
    return unclear;
  }

  // For people. Programs are told in the end.
  void tell(const std::string& text) const {
    if (!options_.json) std::fputs(text.c_str(), stdout);
  }

  // Returns whether all of the products goes.
  bool show_plans() const {
    bool all_goes = true;
    if (options_.json && options_.plan) std::fputs(json_of(plans_).c_str(), stdout);
    for (const removal& planned : plans_) {
      tell(text_of(planned));
      all_goes = all_goes && std::ranges::all_of(planned.paths, [](const planned_path& path) {
                   return path.why.empty();
                 });
    }
    return all_goes;
  }

  bool operator_agrees() const {
    if (isatty(STDIN_FILENO) == 0) {
      complain(described_, "nobody can be asked: say --yes; nothing was removed");
      return false;
    }
    std::fputs("Remove this? (y/n) [n]: ", stdout);
    std::fflush(stdout);
    std::string answer;
    for (int c = std::getchar(); c != EOF && c != '\n'; c = std::getchar()) {
      answer += static_cast<char>(c);
    }
    if (answer == "y" || answer == "yes") return true;
    complain(described_, "nothing was removed");
    return false;
  }

  // What stays besides what was shown is said now.
  void plan_again(removal& planned) const {
    const std::string shown = text_of(planned);
    planned = plan_removal(store_, *planned.product, removed_);
    for (const planned_path& path : planned.paths) {
      const std::string line = line_of(path);
      if (!path.why.empty() && shown.find(line) == std::string::npos) tell(line);
    }
  }

  exit_status act(bool all_goes) {
    exit_status status = all_goes ? exit_status::GOOD : exit_status::FINDINGS;
    std::vector<removed_product> done;
    for (std::size_t i = 0; i < plans_.size() && status != exit_status::FAILED; ++i) {
      // The one before may have handed something on to it.
      if (i > 0) plan_again(plans_[i]);
      const removal& planned = plans_[i];
      done.push_back(planned.faults.empty()
                         ? remove(planned, store_, options_.registry, options_.keep_in)
                         : removed_product{{}, {}, planned.faults});
      status = std::max(status, tell_done(printable(planned.product->content.id), done.back()));
    }
    if (options_.json) std::fputs(json_of(plans_, done).c_str(), stdout);
    if (std::fflush(stdout) == 0) return status;
    complain(described_, std::string("what was done cannot be told: ") + std::strerror(errno));
    return exit_status::FAILED;
  }

  exit_status tell_done(const std::string& id, const removed_product& done) const {
    for (const std::string& remark : done.remarks) tell("  " + printable(remark) + "\n");
    tell(id + ": removed " + counted_kinds(done.removed) + "\n");
    for (const std::string& fault : done.faults) complain(described_, id + ": " + printable(fault));
    if (done.faults.empty())
      return done.remarks.empty() ? exit_status::GOOD : exit_status::FINDINGS;
    complain(described_, id + ": not finished, its receipt is still there: run this again");
    return exit_status::FAILED;
  }

  const command& described_;
  const remove_options& options_;
  receipt_store store_;
  std::vector<const stored_receipt*> products_;
  product_set removed_;
  std::vector<removal> plans_;
};

}  // namespace

exit_status run_remove(int count, char** arguments) {
  remove_options options;
  const command described = described_command(options);
  const auto parsed = parse_command_line(described, count, arguments);
  if (const exit_status* ended = std::get_if<exit_status>(&parsed)) return *ended;
  const auto& operands = std::get<std::vector<std::string>>(parsed);
  if (operands.empty()) {
    complain(described, "no product is named");
    return exit_status::WRONG_USE;
  }
  if (options.json && !options.plan && !options.yes) {
    complain(described, "--format=json asks nobody: say --plan or --yes");
    return exit_status::WRONG_USE;
  }
  return remove_run(described, options).run(operands);
}

}  // namespace morvane
