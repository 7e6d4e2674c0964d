// The wrapping printer: the first three lines of the input are width, prefix and suffix, and the
// rest is the message.
#include "text/wrap.h"

#include <algorithm>
#include <vector>

#include "target.h"
#include "text/number.h"

namespace {

using namespace morvane;

constexpr int WIDEST = 500;

std::string without_blanks(std::string_view value) {
  std::string result;
  std::copy_if(value.begin(), value.end(), std::back_inserter(result),
               [](char c) { return c != ' ' && c != '\n'; });
  return result;
}

// Checks the lines of a message without newlines, wrapped without frames.
void check_justification(std::string_view output, int width) {
  while (!output.empty()) {
    const std::string_view line = take_line(output);
    if (output.empty() || line.find(' ') == std::string_view::npos) continue;
    require(line.size() == static_cast<std::size_t>(width),
            "each line with blanks, but the last, is justified");
  }
}

struct layout {
  int width;
  std::string_view prefix;
  std::string_view suffix;

  std::ptrdiff_t columns() const {
    return width - static_cast<std::ptrdiff_t>(prefix.size() + suffix.size());
  }
};

// Checks the lines of a message without newlines.
void check_lines(std::string_view output, const layout& given) {
  std::vector<std::string_view> lines;
  while (!output.empty()) lines.push_back(take_line(output));
  for (std::string_view line : lines) {
    const bool last = line.data() == lines.back().data();
    require(line.starts_with(given.prefix), "each line has its prefix");
    require(line.substr(given.prefix.size()).ends_with(given.suffix), "each line has its suffix");
    require(line.size() <= static_cast<std::size_t>(given.width), "no line is too wide");
    if (given.suffix.empty()) continue;
    require(line.size() == static_cast<std::size_t>(given.width),
            last ? "the last line closes at the width" : "each line closes at the width");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view message = as_text(data, size);
  const int width = std::min(number_or_zero(take_line(message)), WIDEST);
  const std::string_view prefix = take_line(message);
  const std::string_view suffix = take_line(message);
  const layout given{width, prefix, suffix};

  const std::string output = wrap(message, width, prefix, suffix);
  require(output.starts_with(prefix), "the output starts with a prefix");
  require(output.ends_with(std::string(suffix) + "\n"), "the output ends with suffix and newline");

  std::string_view text = message;
  if (text.ends_with('\n')) text.remove_suffix(1);
  const bool one_line = text.find('\n') == std::string_view::npos;
  if (given.columns() <= 0) {
    require(output == std::string(prefix) + std::string(text) + std::string(suffix) + "\n",
            "without a column the message is one line");
  } else if (given.columns() < WIDE_LINE) {
    const std::string bare = wrap(message, static_cast<int>(given.columns()), "", "");
    require(without_blanks(bare) == without_blanks(message),
            "only blanks and newlines are added or lost");
    if (one_line) check_justification(bare, static_cast<int>(given.columns()));
    if (one_line) check_lines(output, given);
  } else if (one_line) {
    const auto columns = static_cast<std::size_t>(given.columns());
    const auto count = [](std::string_view value, char c) {
      return static_cast<std::size_t>(std::count(value.begin(), value.end(), c));
    };
    const std::size_t lines = text.size() / columns + count(text, ' ') + 1;
    require(count(output, '\n') <= lines * (columns / WIDE_LINE + 1),
            "a wide line is a line's worth of pieces");
  }
  return 0;
}
