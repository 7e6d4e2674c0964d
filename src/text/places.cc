#include "text/places.h"

#include <algorithm>

namespace morvane {

namespace {

// Returns the name in the braces that `text` begins with, empty where it begins with none.
std::string_view leading_name(std::string_view text) {
  if (!text.starts_with('{')) return {};
  const std::size_t close = text.find('}');
  return close == std::string_view::npos ? "" : text.substr(1, close - 1);
}

// Takes the braces with `name` off the head of `text`.
void remove_name(std::string_view& text, std::string_view name) {
  text.remove_prefix(name.size() + 2);
}

// Returns the first entry of `list` that is called `name`, or null. None has an empty name.
template <typename Entry>
const Entry* find_named(const std::vector<Entry>& list, std::string_view name) {
  if (name.empty()) return nullptr;
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const Entry& entry) { return entry.name == name; });
  return found == list.end() ? nullptr : &*found;
}

// Takes the first line off `text` and returns it, its newline included.
std::string_view take_line(std::string_view& text) {
  const std::string_view line = text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
  text.remove_prefix(line.size());
  return line;
}

// Takes the conditions off the head of `line` and returns whether all of them are met.
bool meets_conditions(std::string_view& line, const conditions& held) {
  bool met = true;
  while (true) {
    const std::string_view mark = leading_name(line);
    const bool negated = mark.starts_with('!');
    const condition* found = find_named(held, mark.substr(negated ? 1 : 0));
    if (found == nullptr) return met;
    met = met && found->holds != negated;
    remove_name(line, mark);
  }
}

void append_filled(std::string& result, std::string_view line, const places& values) {
  while (!line.empty()) {
    const std::string_view name = leading_name(line);
    if (const place* found = find_named(values, name); found != nullptr) {
      result += found->value;
      remove_name(line, name);
    } else {
      // Up to where the next place may begin.
      const std::string_view literal = line.substr(0, line.find('{', 1));
      result += literal;
      line.remove_prefix(literal.size());
    }
  }
}

}  // namespace

std::string fill_places(std::string_view text, const places& values, const conditions& held) {
  std::string result;
  while (!text.empty()) {
    std::string_view line = take_line(text);
    if (meets_conditions(line, held)) append_filled(result, line, values);
  }
  return result;
}

}  // namespace morvane
