#include "output/output_file.h"

#include "console/leave.h"
#include "console/message_format.h"
#include "console/message_table.h"
#include "console/printer.h"
#include "platform/file.h"
#include "version/version.h"

namespace morvane {

output_file::output_file(std::string_view name) {
  const int descriptor = open_for_writing(std::string(name));
  if (descriptor < 0) leave_without_file(name);
  file_ = stream_of(descriptor, "w");
}

output_file::~output_file() {
  if (file_ != nullptr) std::fclose(file_);
}

bool output_file::write(std::string_view content) {
  const bool written = std::fwrite(content.data(), 1, content.size(), file_) == content.size();
  const bool closed = std::fclose(file_) == 0;
  file_ = nullptr;
  return written && closed;
}

void leave_without_file(std::string_view name) {
  print(fill("\n\n%s%s%s\n\n", {r[FILE_NOT_OPENED], name, r[FILE_NOT_OPENED_END]}));
  quit();
}

std::string generated_head() {
  return fill("# %s\n# %s\n#\n# %s%s\n\n",
              {r[GENERATED_HEAD_1], r[GENERATED_HEAD_2], r[GENERATED_HEAD_3], SCCSid});
}

}  // namespace morvane
