#include "output/makefile.h"

#include <cstdio>
#include <string>
#include <vector>

#include "catalogue/listing.h"
#include "console/message_format.h"
#include "host/operating_system.h"
#include "host/rights.h"
#include "output/output_file.h"
#include "output/product_rules.h"
#include "version/version.h"

namespace morvane {

namespace {

constexpr std::string_view SEPARATOR =
    "\n#############################################################################\n\n";

std::string file_head(const std::vector<const product*>& products) {
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
  text += fill("TAR_PATH\t= %s\n", {current_directory()});
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

}  // namespace

void write_makefile(const installation_order& order) {
  std::vector<const product*> products;
  for (const product* record : order) {
    if (record != nullptr && !record->id.empty() && is_ordered(*record)) products.push_back(record);
  }

  output_file file(MAKEFILE_NAME);
  const std::string host_system = whichOS();
  std::string content = file_head(products);
  for (const product* record : products) {
    content += SEPARATOR;
    content += product_rules(*record, host_system);
  }
  content += file_tail();
  if (!file.write(content)) {
    std::remove(std::string(MAKEFILE_NAME).c_str());
    leave_without_file(MAKEFILE_NAME);
  }
}

}  // namespace morvane
