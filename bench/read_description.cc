// read_description DIRECTORY IDENTIFIER: reads one description and prints the peak of its own
// memory in KiB (VmHWM: unlike the peak that wait tells, it owes nothing to whoever started it).
#include <fstream>
#include <iostream>
#include <string>

#include "catalogue/description_parser.h"
#include "messages/table.h"

int main(int, char** arguments) {
  static morvane::product record;
  morvane::read_resource();  // for the keywords
  morvane::read_product(arguments[1], arguments[2], record);

  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.starts_with("VmHWM:")) std::cout << std::stoi(line.substr(6)) << '\n';
  }
}
