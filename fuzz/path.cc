// Path normalisation, the test for special characters, and quoting: the input is a path, and so
// is each of its lines.
#include "settings/path.h"

#include <algorithm>
#include <cctype>

#include "platform/shell.h"
#include "target.h"
#include "text/quoting.h"

namespace {

using namespace morvane;

std::string without_slashes(std::string_view path) {
  std::string result(path);
  std::erase(result, '/');
  return result;
}

// Returns the word that the shell reads from `quoted`, a word in single quotes with backslashes
// outside them, or one without quotes.
std::string read_by_shell(std::string_view quoted) {
  std::string word;
  bool in_quotes = false;
  for (std::size_t i = 0; i < quoted.size(); ++i) {
    if (quoted[i] == '\'') {
      in_quotes = !in_quotes;
    } else if (!in_quotes && quoted[i] == '\\') {
      require(++i < quoted.size(), "a backslash has a character to quote");
      word += quoted[i];
    } else {
      const bool plain = std::isalnum(static_cast<unsigned char>(quoted[i])) != 0 ||
                         std::string_view("_./-+,@~").find(quoted[i]) != std::string_view::npos;
      require(in_quotes || plain, "what the shell interprets stands in quotes");
      require(in_quotes || i > 0 || quoted[i] != '~', "a leading ~ stands in quotes");
      word += quoted[i];
    }
  }
  require(!in_quotes, "quotes are closed");
  return word;
}

void check(std::string_view path) {
  const std::string normal = normalise_path(path);
  require(normal.find("//") == std::string::npos, "no slash is repeated");
  require(normal == "/" || !normal.ends_with('/'), "no slash stands at the end");
  require(normal.starts_with('/') == path.starts_with('/'), "an absolute path stays one");
  require(normal.empty() == path.empty(), "only nothing becomes nothing");
  require(normalise_path(normal) == normal, "a normal path stays as it is");
  require(without_slashes(normal) == without_slashes(path), "only slashes are dropped");

  const bool special = holds_special_characters(path);
  require(special == holds_special_characters(normal), "slashes are not special");
  const bool expected = std::any_of(path.begin(), path.end(), [](char c) {
    const bool control = static_cast<unsigned char>(c) < 0x80 && c != '\0' && std::isgraph(c) == 0;
    constexpr std::string_view INTERPRETED = "'\"\\$;&|<>()*?[]{}!#%:=`^";
    return control || INTERPRETED.find(c) != std::string_view::npos;
  });
  require(special == expected, "special are blanks, control characters, and what make interprets");

  if (path.find('\0') == std::string_view::npos) {
    require(read_by_shell(quote(path)) == path, "a quoted word is read back by the shell");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view rest = as_text(data, size);
  check(rest);
  while (!rest.empty()) check(take_line(rest));
  return 0;
}
