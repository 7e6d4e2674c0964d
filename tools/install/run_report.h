// What the operator sees of an installation while it runs, and of what came of it.
#ifndef MORVANE_INSTALL_RUN_REPORT_H
#define MORVANE_INSTALL_RUN_REPORT_H

#include <cstddef>
#include <cstdio>
#include <string>

#include "install/installation.h"
#include "install/plan.h"

namespace morvane {

// Returns the command that goes on with the installation in the current directory, of the products
// that were `chosen`; none stands for all.
std::string command_to_continue(const std::vector<std::string>& chosen);

class run_report {
 public:
  // Progress goes to `progress`, what failed to standard error, with the command that goes on.
  run_report(const install_plan& plan, std::string to_continue, std::FILE* progress);

  void begins(std::size_t product);
  void ended(std::size_t product, const product_result& result);
  void finish(const installation_result& result);

 private:
  std::string id(std::size_t product) const;
  void clear_line();

  const install_plan& plan_;
  std::string to_continue_;
  std::FILE* progress_;
  bool on_terminal_;
  std::size_t begun_ = 0;
  std::size_t installed_ = 0;
};

}  // namespace morvane

#endif  // MORVANE_INSTALL_RUN_REPORT_H
