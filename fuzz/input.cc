#include "input.h"

#include <algorithm>

#include "target.h"
#include "text/words.h"

namespace morvane {

namespace {

constexpr std::string_view SECTION = "== ";
constexpr std::string_view DIRECTORY = "@DIR@";
constexpr std::size_t MOST_FILES = 60;
constexpr std::size_t LONGEST_NAME = 100;
constexpr std::ptrdiff_t DEEPEST = 4;

std::string in_directory(std::string_view text, std::string_view directory) {
  std::string result(text);
  for (std::size_t at = 0; (at = result.find(DIRECTORY, at)) != std::string::npos;) {
    result.replace(at, DIRECTORY.size(), directory);
    at += directory.size();
  }
  return result;
}

// Tells whether `name` can be the path of a file below the directory, and shows in a listing.
bool is_file_name(std::string_view name) {
  if (name.find('\0') != std::string_view::npos) return false;
  if (name.starts_with('/') || name.ends_with('/') || name == "morvane.rsc") return false;
  const auto parts = split_words(name, "/");
  return !parts.empty() && std::count(name.begin(), name.end(), '/') < DEEPEST &&
         std::all_of(parts.begin(), parts.end(), [](std::string_view part) {
           return !part.starts_with('.') && part.size() <= LONGEST_NAME;
         });
}

}  // namespace

run_input cut(std::string_view input, std::string_view directory) {
  run_input result;
  std::string dropped;
  std::string* section = &result.answers;
  while (!input.empty()) {
    const bool ended = input.find('\n') != std::string_view::npos;
    const std::string_view line = take_line(input);
    if (!line.starts_with(SECTION)) {
      *section += in_directory(line, directory) + (ended ? "\n" : "");
      continue;
    }
    const std::string_view name = line.substr(SECTION.size());
    if (name == "messages") {
      section = &result.messages;
    } else if (name == "answers") {
      section = &result.answers;
    } else if (name == "host") {
      section = &result.host;
    } else if (is_file_name(name) && result.files.size() < MOST_FILES) {
      section = &result.files[std::string(name)];
    } else {
      section = &dropped;
    }
  }
  return result;
}

}  // namespace morvane
