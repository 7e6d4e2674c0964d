#include "output/makefile.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/leave_without.h"
#include "host/operating_system.h"
#include "host/rights.h"
#include "output/output_file.h"
#include "output/product_rules.h"
#include "platform/directory.h"
#include "text/format.h"
#include "version/version.h"

namespace morvane {

namespace {

constexpr std::string_view SEPARATOR =
    "\n#############################################################################\n\n";

std::string file_head(const std::vector<const product*>& products, std::string_view directory) {
  std::string text = generated_head();
  text += "#\n";
  text += fill("# This file was generated automatically by '%s'.\n", {PROGRAM_NAME});
  text +=
      "\n"
      ".SILENT:\n"
      "\n"
      "CC\t\t= /usr/bin/cc\n";
  text += "INST_FILES\t=";
  for (const std::string_view file : INST_FILES) text += fill(" %s", {file});
  text += "\n";
  text += fill("TAR_PATH\t= %s\n", {directory});
  text +=
      "\n"
      "\n"
      "install:        products\n"
      "\n";
  text += "products:";
  for (const product* record : products) text += fill(" %s", {record->id});
  text += "\n";
  return text;
}

std::string file_tail() {
  return fill(
      "%s"
      ".c:\n"
      "\techo \"** compiling $@\"\n"
      "\t$(CC) $(OPTS) -o ./$@ ./$*.c\n"
      "\n\n",
      {SEPARATOR});
}

std::string compose(const std::vector<const product*>& products, std::string_view host_system,
                    std::string_view directory) {
  std::string content = file_head(products, directory);
  for (const product* record : products) {
    content += SEPARATOR;
    content += product_rules(*record, host_system);
  }
  return content + file_tail();
}

}  // namespace

void write_makefile(const installation_order& order) {
  std::vector<const product*> products;
  for (const product* record : order) {
    if (record != nullptr && !record->id.empty() && is_ordered(*record)) products.push_back(record);
  }

  bool written = false;
  std::optional<std::string> directory;
  {
    output_file file(MAKEFILE_NAME, earlier_file::GOES);
    const std::string host_system = whichOS();
    directory = get_pwd();
    if (directory) written = file.write(compose(products, host_system, *directory));
  }
  if (!directory) leave_without_current_directory();
  if (!written) leave_without_file(MAKEFILE_NAME);
}

}  // namespace morvane
