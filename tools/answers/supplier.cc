#include "answers/supplier.h"

#include <vector>

#include "answer_file/escaping.h"
#include "settings/path.h"
#include "text/words.h"

namespace morvane {

namespace {

constexpr std::string_view IN = "in";
constexpr std::string_view ANYWAY = "anyway";

}  // namespace

supplier supplier_of(const product& record) {
  const bool elsewhere =
      record.install == product_state::INSTALLED || record.install == product_state::ACCEPTED;
  return {.id = std::string(record.id),
          .directory = elsewhere ? std::string(record.path) : "",
          .anyway = record.install == product_state::ACCEPTED};
}

std::string supplier_text(const supplier& shown) {
  const std::string directory = escape_word(shown.directory);
  if (shown.directory.empty()) return escape_word(shown.id);
  if (!shown.id.empty()) return escape_word(shown.id) + " in " + directory;
  return shown.anyway ? directory + " anyway" : directory;
}

std::optional<supplier> read_supplier(std::string_view value) {
  const std::vector<std::string_view> words = split_words(value, " \t");
  const auto directory = [](std::string_view word) {
    return normalise_path(unescape(word).value_or(""));
  };
  if (words.size() == 1 && words[0].starts_with('/')) return supplier{"", directory(words[0])};
  if (words.size() == 1) return supplier{unescape(words[0]).value_or(""), ""};
  if (words.size() == 2 && words[0].starts_with('/') && words[1] == ANYWAY) {
    return supplier{"", directory(words[0]), true};
  }
  if (words.size() == 3 && words[1] == IN && words[2].starts_with('/')) {
    return supplier{unescape(words[0]).value_or(""), directory(words[2])};
  }
  return std::nullopt;
}

}  // namespace morvane
