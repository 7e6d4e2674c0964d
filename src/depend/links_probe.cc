#include "depend/links_probe.h"

#include "console/printer.h"
#include "console/question.h"
#include "messages/table.h"
#include "platform/effects.h"
#include "platform/shell.h"
#include "text/format.h"
#include "text/quoting.h"

namespace morvane {

namespace {

constexpr std::string_view STANDARD_DIRECTORY = "/usr/bin/links";

// Tells whether the first place where the configuration file's name stands in `path` is its end.
bool names_configuration_file(std::string_view path) {
  const std::string_view file_name = r[LINKS_FILE_NAME];
  const std::size_t position = path.find(file_name);
  return position != std::string_view::npos && position + file_name.size() == path.size();
}

// Asks until the configuration file is there. `proposal` is what Enter alone means.
std::string ask_for_links(const std::string& proposal) {
  print(fill("\n%s\n%s\n%s (%s): ",
             {r[LINKS_FILE_MISSING_1], r[LINKS_FILE_MISSING_2], r[LINKS_FILE_QUESTION], proposal}));
  const question asked = {.number = LINKS_FILE_QUESTION, .proposal = proposal};
  // An answer of the wrong form leaves the loop to the proposal, which may have come about
  // meanwhile.
  std::string path = proposal;
  do {
    path = ask_string(asked).value_or(proposal);
    if (!names_configuration_file(path)) {
      print(fill("%s '%s'!\n", {r[LINKS_FILE_WRONG_NAME], path}));
      print(fill("%s\n(%s): ", {r[LINKS_FILE_QUESTION_AGAIN], proposal}));
      path = proposal;
    } else if (!path.starts_with('/')) {
      print(fill("%s\n(%s): ", {r[LINKS_FILE_QUESTION_AGAIN], proposal}));
      path = proposal;
    } else if (!on_host().exists(path)) {
      print(fill("%s '%s'!\n", {r[LINKS_FILE_NOT_THERE], path}));
      print(fill("%s\n( %s ): ", {r[LINKS_FILE_QUESTION_AGAIN], proposal}));
    }
  } while (!on_host().exists(path));
  return path;
}

}  // namespace

std::string get_links_path(std::string links, std::optional<std::string_view> base) {
  if (links.empty() || !names_configuration_file(links)) links = r[LINKS_DEFAULT_PATH];
  if (on_host().exists(links)) return links;
  links = fill("%s/config/%s", {base.value_or(STANDARD_DIRECTORY), r[LINKS_FILE_NAME]});
  return on_host().exists(links) ? links : ask_for_links(links);
}

// The configuration file is a program, which the messages give its arguments; its status tells no
// more than "1.3 or not".
release get_kemo_version(std::string_view links) {
  const bool newer = run_command(
      fill("%s%s%s%s", {quote(links), r[LINKS_COMMAND_1], r[LINKS_COMMAND_2], r[LINKS_COMMAND_3]}));
  return {1, newer ? 3 : 2, 0, 0};
}

}  // namespace morvane
