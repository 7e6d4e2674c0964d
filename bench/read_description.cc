// read_description DIRECTORY IDENTIFIER: reads one description and prints the peak of its own
// memory in KiB (VmHWM: unlike the peak that wait tells, it owes nothing to whoever started it).
#include <cstdio>
#include <optional>
#include <string>

#include "catalogue/description_parser.h"
#include "messages/table.h"
#include "platform/file.h"

int main(int, char** arguments) {
  static morvane::product record;
  morvane::read_resource();  // for the keywords
  morvane::read_product(arguments[1], arguments[2], record);

  const std::string status =
      morvane::read_rest(morvane::open_for_reading("/proc/self/status")).value_or("");
  const std::size_t peak = status.find("VmHWM:");
  if (peak == std::string::npos) return 1;
  std::printf("%d\n", std::stoi(status.substr(peak + 6)));
}
