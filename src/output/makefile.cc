#include "output/makefile.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/leave_without.h"
#include "host/operating_system.h"
#include "host/rights.h"
#include "output/generated_file.h"
#include "output/makefile_text.h"
#include "output/product_facts.h"
#include "platform/directory.h"

namespace morvane {

namespace {

std::vector<product_facts> facts_of_all(const installation_order& order,
                                        std::string_view host_system) {
  std::vector<product_facts> facts;
  for (const product* record : order) {
    if (record == nullptr || record->id.empty() || !is_ordered(*record)) continue;
    facts.push_back(gather_facts(*record, host_system));
  }
  return facts;
}

}  // namespace

void write_makefile(const installation_order& order) {
  std::optional<std::string> directory;
  const auto compose = [&]() -> std::optional<std::string> {
    const std::string host_system = whichOS();
    directory = get_pwd();
    if (!directory) return std::nullopt;
    return generated_head() + makefile_text(*directory, facts_of_all(order, host_system));
  };
  const bool written =
      write_generated_file(std::string(MAKEFILE_NAME), earlier_file::GOES, compose);
  // First: without the directory nothing was composed, which counts as not written, too.
  if (!directory) leave_without_current_directory();
  if (!written) leave_without_file(MAKEFILE_NAME);
}

}  // namespace morvane
