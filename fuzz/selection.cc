// The selection line: the input is what the operator typed.
#include "settings/selection.h"

#include <algorithm>

#include "target.h"
#include "text/white_space.h"

namespace {

using namespace morvane;

constexpr std::string_view SEPARATORS = "\t ,;/";

std::string join(const std::vector<int>& numbers) {
  std::string line;
  for (const int number : numbers) line += (line.empty() ? "" : ", ") + std::to_string(number);
  return line;
}

// Returns `line` with each separator replaced by `separator`.
std::string with_separator(std::string_view line, char separator) {
  std::string result(line);
  for (char& c : result) {
    if (SEPARATORS.find(c) != std::string_view::npos) c = separator;
  }
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view line = as_text(data, size);
  const std::vector<int> numbers = read_selection(line);
  require(numbers.empty() == line.empty(), "each line but an empty one names a number");
  require(numbers.size() <= line.size(), "a number takes a character");
  const auto second = numbers.begin() + (numbers.empty() ? 0 : 1);
  require(std::all_of(second, numbers.end(), [](int number) { return number >= 0; }),
          "only the first number can have a sign");
  if (line.find_first_of(SEPARATORS) == std::string_view::npos) {
    require(numbers.size() <= 1, "numbers end at separators only");
  } else if (!is_white_space(line.front()) && line.find_first_of(SEPARATORS) > 0) {
    // White space at the start belongs to the first number, other separators do not.
    for (const char separator : SEPARATORS) {
      require(read_selection(with_separator(line, separator)) == numbers,
              "all separators mean the same");
    }
  }
  require(read_selection(join(numbers)) == numbers, "numbers written out are read back");

  const std::optional<int> details = read_details_request(line);
  const std::size_t mark = line.find('?');
  require(details.has_value() == (mark != std::string_view::npos),
          "a question mark asks for details");
  if (details && mark + 1 < line.size()) {
    require(*details == read_selection(line.substr(mark + 1)).front(),
            "the number of the details is read as those of products are");
  }
  return 0;
}
