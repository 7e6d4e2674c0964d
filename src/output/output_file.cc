#include "output/output_file.h"

#include <unistd.h>

#include "console/leave_without.h"
#include "messages/table.h"
#include "platform/signals.h"
#include "text/format.h"
#include "version/version.h"

namespace morvane {

output_file::output_file(std::string_view name, earlier_file earlier)
    : name_(name), earlier_(earlier) {
  file_ = open_for_writing(name_, created_);
  if (!file_.is_open()) leave_without_file(name);
  if (created_) remove_on_signal(name_);
}

output_file::~output_file() {
  if (written_ || (!created_ && earlier_ == earlier_file::STAYS)) return;
  unlink(name_.c_str());
  keep_on_signal(name_);
}

bool output_file::write(std::string_view content) {
  const signals_held held;
  const bool replaced = replace_content(file_, content);
  written_ = file_.close() && replaced;
  created_ = false;
  keep_on_signal(name_);
  return written_;
}

std::string generated_head() {
  return fill("# %s\n# %s\n#\n# %s%s\n\n",
              {r[GENERATED_HEAD_1], r[GENERATED_HEAD_2], r[GENERATED_HEAD_3], SCCSid});
}

}  // namespace morvane
