// The command line of a command, with the options that all of them have.
#ifndef MORVANE_COMMAND_COMMAND_LINE_H
#define MORVANE_COMMAND_COMMAND_LINE_H

#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "command/exit_status.h"

namespace morvane {

struct command_option {
  std::string name;      // without its hyphens; of one letter: a short option
  std::string argument;  // what the help calls it; empty: the option takes none
  std::string help;
  // Takes the argument; returns whether it will do.
  std::function<bool(const std::string& argument)> take;
};

// Besides these options, every command has -C DIRECTORY, --help, --version, and -- before operands
// that look like options.
struct command {
  std::string name;
  std::string operands;  // as the usage shows them
  std::string purpose;   // in a line
  std::vector<command_option> options;
};

// Returns the operands of a command line, its options taken and the current directory changed as -C
// tells; or how the command ends at once: after its help or version went to standard output, or
// what is wrong with the command line to standard error. Call it once.
std::variant<std::vector<std::string>, exit_status> parse_command_line(const command& described,
                                                                       int count, char** arguments);

// Returns the version that all commands have.
std::string_view command_version();

// Reports on standard error, under the name of the command.
void complain(const command& described, std::string_view text);

}  // namespace morvane

#endif  // MORVANE_COMMAND_COMMAND_LINE_H
