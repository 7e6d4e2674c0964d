#include "command/command_line.h"

#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace morvane {

namespace {

// What getopt_long returns for the first long option of the command itself, beyond all letters.
constexpr int FIRST_LONG_OPTION = 256;

constexpr int HELP = 'h';
constexpr int VERSION = 'V';

bool is_short(const command_option& option) {
  return option.name.size() == 1;
}

void print_option(const std::string& option, const std::string& help) {
  std::printf("  %-24s %s\n", option.c_str(), help.c_str());
}

void print_help(const command& described) {
  std::printf("usage: %s [OPTION]... %s\n%s\n\n", described.name.c_str(),
              described.operands.c_str(), described.purpose.c_str());
  for (const command_option& option : described.options) {
    if (is_short(option)) {
      print_option("-" + option.name + (option.argument.empty() ? "" : " ") + option.argument,
                   option.help);
    } else {
      print_option("--" + option.name + (option.argument.empty() ? "" : "=") + option.argument,
                   option.help);
    }
  }
  print_option("-C DIRECTORY", "work in DIRECTORY");
  print_option("--help", "print this");
  print_option("--version", "print the version");
}

std::vector<option> long_options(const command& described) {
  std::vector<option> options;
  int value = FIRST_LONG_OPTION;
  for (const command_option& option : described.options) {
    const int argument = option.argument.empty() ? no_argument : required_argument;
    if (!is_short(option)) options.push_back({option.name.c_str(), argument, nullptr, value});
    ++value;
  }
  options.push_back({"help", no_argument, nullptr, HELP});
  options.push_back({"version", no_argument, nullptr, VERSION});
  options.push_back({nullptr, 0, nullptr, 0});
  return options;
}

// Returns the short options as getopt_long takes them.
std::string short_options(const command& described) {
  std::string options = "C:";
  for (const command_option& option : described.options) {
    if (is_short(option)) options += option.name + (option.argument.empty() ? "" : ":");
  }
  return options;
}

// Returns the option that getopt_long has found, or null where it has said what is wrong.
const command_option* find_option(const command& described, int found) {
  if (found >= FIRST_LONG_OPTION) {
    return &described.options[static_cast<std::size_t>(found - FIRST_LONG_OPTION)];
  }
  const auto option = std::ranges::find(described.options, std::string(1, static_cast<char>(found)),
                                        &command_option::name);
  return option == described.options.end() ? nullptr : &*option;
}

exit_status point_to_help(const command& described) {
  std::fprintf(stderr, "'%s --help' shows the options\n", described.name.c_str());
  return exit_status::WRONG_USE;
}

}  // namespace

std::variant<std::vector<std::string>, exit_status> parse_command_line(const command& described,
                                                                       int count,
                                                                       char** arguments) {
  const std::vector<option> options = long_options(described);
  const std::string letters = short_options(described);
  for (;;) {
    const int found = getopt_long(count, arguments, letters.c_str(), options.data(), nullptr);
    if (found == -1) break;
    if (found == HELP) {
      print_help(described);
      return exit_status::GOOD;
    }
    if (found == VERSION) {
      std::printf("%s %s\n", described.name.c_str(), MORVANE_VERSION);
      return exit_status::GOOD;
    }
    if (found == 'C') {
      if (chdir(optarg) == 0) continue;
      complain(described, std::string(optarg) + ": " + std::strerror(errno));
      return exit_status::WRONG_USE;
    }
    const command_option* taken = find_option(described, found);
    if (taken == nullptr) return point_to_help(described);
    const std::string argument = optarg == nullptr ? "" : optarg;
    if (taken->take(argument)) continue;
    complain(described,
             (is_short(*taken) ? "-" : "--") + taken->name + " does not take '" + argument + "'");
    return point_to_help(described);
  }
  return std::vector<std::string>(arguments + optind, arguments + count);
}

std::string_view command_version() {
  return MORVANE_VERSION;
}

void complain(const command& described, std::string_view text) {
  std::fprintf(stderr, "%s: %.*s\n", described.name.c_str(), static_cast<int>(text.size()),
               text.data());
}

}  // namespace morvane
