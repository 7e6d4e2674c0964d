#include "platform/output_file.h"

#include <unistd.h>

#include "platform/signals.h"

namespace morvane {

output_file::output_file(std::string_view name, earlier_file earlier)
    : name_(name), earlier_(earlier) {
  bool created = false;
  file_ = open_for_writing(name_, created);
  // An earlier file is not lost to a signal: nothing was written to it yet.
  if (created) remove_on_signal(name_);
  unwanted_ = created || (is_open() && earlier == earlier_file::GOES);
}

output_file::~output_file() {
  if (!unwanted_) return;
  unlink(name_.c_str());
  keep_on_signal(name_);
}

bool output_file::write(std::string_view content) {
  const signals_held held;
  const bool replaced = replace_content(file_, content);
  const bool written = file_.close() && replaced;
  unwanted_ = !written && earlier_ == earlier_file::GOES;
  keep_on_signal(name_);
  return written;
}

}  // namespace morvane
