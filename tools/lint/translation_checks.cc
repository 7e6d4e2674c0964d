#include "lint/translation_checks.h"

#include <optional>
#include <string_view>
#include <utility>

#include "lint/answer_letters.h"
#include "lint/message_file.h"
#include "messages/numbers.h"
#include "report/finding.h"

namespace morvane {

namespace {

// Tells whether such a text is no word of a language.
bool is_technical(message_kind kind) {
  return kind == message_kind::COMMAND || kind == message_kind::KEYWORD ||
         kind == message_kind::NAME || kind == message_kind::NUMBER;
}

bool begin_and_end_alike(std::string_view a, std::string_view b) {
  return a.starts_with('\n') == b.starts_with('\n') && a.ends_with('\n') == b.ends_with('\n');
}

bool name_the_same_answers(const message_file& a, const message_file& b, int number) {
  return answers_named(a.text(number), a.text(ANSWER_LETTERS)) ==
         answers_named(b.text(number), b.text(ANSWER_LETTERS));
}

}  // namespace

bool check_translation(const std::string& file, const std::string& original,
                       finding_list& findings) {
  const std::optional<message_file> read = read_message_file(file);
  const std::optional<message_file> meant = read_message_file(original);
  if (!read || !meant) return false;
  for (const message_description& message : MESSAGES) {
    const int number = message.number;
    if (!read->has(number) || !meant->has(number)) continue;
    const auto add = [&](check_id id, const std::string& text) {
      findings.add(id, file, read->place(number), "message " + shown_number(number) + text);
    };
    if (is_technical(message.kind)) {
      if (read->text(number) == meant->text(number)) continue;
      add("message-translated",
          " is no word of a language: it stays " + in_quotes(meant->text(number)));
      continue;
    }
    if (!begin_and_end_alike(read->text(number), meant->text(number))) {
      add("message-new-lines", " begins or ends otherwise than the original, as to new lines");
    }
    if (number != ANSWER_LETTERS && !name_the_same_answers(*read, *meant, number)) {
      add("message-answers", " does not name the answers that the original names by their letters");
    }
  }
  return true;
}

}  // namespace morvane
