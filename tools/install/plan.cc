#include "install/plan.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <utility>

#include "install/host_checks.h"
#include "install/product_plan.h"
#include "install/schedule.h"
#include "platform/file.h"
#include "platform/identity.h"
#include "receipt/receipt_store.h"
#include "text/quoting.h"
#include "tree/directory.h"

namespace morvane {

namespace {

using std::string;

// Returns the paths that the archive of a product fills, wherever links lead on the way.
std::set<string> filled_paths(const product_plan& product) {
  std::error_code error;
  const std::filesystem::path top = std::filesystem::weakly_canonical(product.facts.path, error);
  std::set<string> paths;
  for (const auto* list : {&product.added, &product.renewed, &product.replaced}) {
    for (const string& path : *list) {
      if (std::ranges::binary_search(product.extracted, path)) paths.insert(top / path);
    }
  }
  return paths;
}

class planner {
 public:
  planner(const install_makefile& makefile, const string& registry)
      : makefile_(makefile), registry_(registry) {
    plan_.directory = makefile.directory;
  }

  install_plan plan() {
    check_where();
    plan_.tools = needed_tools(makefile_.products);
    check_tools(plan_.tools, plan_.findings);
    for (const product_facts& facts : makefile_.products) add(facts);
    check_shared_files();
    check_handing_on();
    check_receipts();
    add_space();
    return std::move(plan_);
  }

 private:
  void find(severity how, const char* id, const string& product, const string& text) {
    plan_.findings.push_back({how, id, product, text});
  }

  // Archives are extracted from where the makefile was written, and looked for where it is run.
  void check_where() {
    if (holds_special_characters(makefile_.directory)) {
      find(severity::ERROR, "directory-name", "",
           "make or the shell would interpret the name of " + in_quotes(makefile_.directory) +
               ": move the distribution");
    }
    if (is_same_file(makefile_.directory, ".")) return;
    find(severity::ERROR, "directory-other", "",
         "install.mk was written in " + in_quotes(makefile_.directory) + ": configure again here");
  }

  void add(const product_facts& facts) {
    check_owner(facts, plan_.findings);
    check_identifier(facts, plan_.findings);
    check_rule_files(facts, plan_.findings);
    if (check_directory(facts, plan_.findings)) {
      plan_.products.push_back(plan_product(facts, plan_.findings));
    } else {
      plan_.products.emplace_back().facts = facts;
    }
  }

  void check_shared_files() {
    std::map<string, std::size_t> filled;
    for (std::size_t i = 0; i < plan_.products.size(); ++i) {
      std::map<std::size_t, std::vector<string>> shared;
      for (const string& path : filled_paths(plan_.products[i])) {
        const auto [before, is_new] = filled.emplace(path, i);
        if (!is_new) shared[std::exchange(before->second, i)].push_back(path);
      }
      for (const auto& [other, paths] : shared) {
        find(severity::NOTE, "files-shared", plan_.products[i].facts.id,
             "replaces " + std::to_string(paths.size()) + " of the files of " +
                 in_quotes(plan_.products[other].facts.id) + ", such as " + in_quotes(paths[0]));
      }
    }
  }

  // Products that are installed before, below the directory of one that hands on.
  void check_handing_on() {
    for (std::size_t i = 0; i < plan_.products.size(); ++i) {
      const product_facts& handing = plan_.products[i].facts;
      for (std::size_t k = 0; k < i; ++k) {
        const product_plan& other = plan_.products[k];
        const bool is_old = (handing.old_owner && other.facts.owner == handing.old_owner) ||
                            (handing.old_group && other.facts.group == handing.old_group);
        if (!is_old || other.extracted.empty() || !is_below(other.facts.path, handing.path)) {
          continue;
        }
        find(severity::ERROR, "handing-on", handing.id,
             "hands on the files of " + in_quotes(other.facts.id) +
                 ", which lie in its directory; install into a directory of its own");
      }
    }
  }

  // What the archive of a product put there is only known by an earlier receipt.
  void check_receipts() {
    receipt_store store;
    for (const product_facts& facts : makefile_.products) {
      if (facts.is_new) continue;
      if (store.receipts.empty()) add_registered(store, registry_);
      add_beside(store, facts.path);
      if (find_trusted(store, facts.id, normal_path(facts.path).value_or(facts.path))) continue;
      find(severity::NOTE, "receipt-none", facts.id,
           "it has no receipt, and gets none; 'morvane-verify --save' makes one where it was "
           "installed from");
    }
  }

  void add_space() {
    std::map<dev_t, planned_space> spaces;
    for (const product_plan& product : plan_.products) {
      struct stat status;
      struct statvfs space;
      const char* path = product.facts.path.c_str();
      if (stat(path, &status) != 0 || statvfs(path, &space) != 0) continue;
      planned_space& added = spaces[status.st_dev];
      if (added.path.empty()) added.path = product.facts.path;
      added.needed += product.bytes;
      added.free = std::uint64_t{acts_as_superuser() ? space.f_bfree : space.f_bavail} *
                   std::uint64_t{space.f_frsize};
    }
    for (const auto& [device, space] : spaces) {
      plan_.space.push_back(space);
      if (space.needed <= space.free) continue;
      find(severity::ERROR, "space-short", "",
           in_quotes(space.path) + " needs " + std::to_string(space.needed) + " bytes, and has " +
               std::to_string(space.free));
    }
  }

  const install_makefile& makefile_;
  const string& registry_;
  install_plan plan_;
};

}  // namespace

bool install_plan::is_blocked() const {
  return std::ranges::any_of(
      findings, [](const plan_finding& each) { return each.severity == severity::ERROR; });
}

install_plan plan_installation(const install_makefile& makefile, const string& registry) {
  return planner(makefile, registry).plan();
}

}  // namespace morvane
