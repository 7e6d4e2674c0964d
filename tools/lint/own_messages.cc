#include "lint/own_messages.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "catalogue/description_keywords.h"
#include "distribution/distribution.h"
#include "messages/table.h"
#include "platform/input_file.h"

namespace morvane {

namespace {

// Returns the table of the file that came with the command; an empty one where there is none.
const message_table& own_table() {
  static const std::unique_ptr<message_table> table = [] {
    auto read = std::make_unique<message_table>();
    if (const std::optional<std::string> path = own_message_file()) {
      input_file file(*path);
      if (file.is_open()) read_messages(file, *read);
    }
    return read;
  }();
  return *table;
}

bool is_word(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
  });
}

}  // namespace

message_number own_keyword(std::string_view word) {
  for (const keyword& each : KEYWORDS) {
    if (own_table()[each.number] == word) return each.number;
  }
  return {};
}

bool use_keywords() {
  const bool usable =
      std::ranges::all_of(KEYWORDS, [](const keyword& each) { return is_word(r[each.number]); });
  if (usable) return true;
  const std::optional<std::string> own = own_message_file();
  return own && load_messages(*own);
}

}  // namespace morvane
