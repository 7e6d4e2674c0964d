#include "output/generated_file.h"

#include "console/leave_without.h"
#include "messages/table.h"
#include "text/format.h"
#include "version/version.h"

namespace morvane {

bool write_generated_file(const std::string& name, earlier_file earlier,
                          const composition& compose) {
  const write_outcome outcome = on_host().write_file(name, earlier, compose);
  if (outcome == write_outcome::NOT_OPENED) leave_without_file(name);
  return outcome == write_outcome::WRITTEN;
}

std::string generated_head() {
  return fill("# %s\n# %s\n#\n# %s%s\n\n",
              {r[GENERATED_HEAD_1], r[GENERATED_HEAD_2], r[GENERATED_HEAD_3], SCCSid});
}

}  // namespace morvane
