#include "lint/value_checks.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "lint/description_fields.h"
#include "messages/table.h"
#include "report/finding.h"
#include "text/number.h"
#include "text/white_space.h"
#include "text/words.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

class value_checks {
 public:
  value_checks(const located_entry& entry, const string& file, finding_list& findings)
      : entry_(entry), file_(file), findings_(findings) {}

  void check() {
    const description_field& field = field_of(entry_.keyword);
    if (entry_.value.empty()) {
      if (field.kind != value_kind::OPENING && field.kind != value_kind::LINES) {
        add("value-empty",
            in_quotes(r[entry_.keyword]) + " has no value: give one, or remove the line");
      }
      return;
    }
    switch (field.kind) {
      case value_kind::NUMBER:
        check_number();
        break;
      case value_kind::VERSION:
        check_version_value();
        break;
      case value_kind::LIST:
        check_list(field);
        break;
      default:
        check_length(field, entry_.value);
    }
  }

 private:
  void add(check_id id, string text) { findings_.add(id, file_, entry_.place, std::move(text)); }

  void check_length(const description_field& field, string_view value) {
    if (field.longest == 0 || value.size() <= field.longest) return;
    add("value-cut", "the program keeps " + std::to_string(field.longest) + " bytes here, of " +
                         std::to_string(value.size()) + ": the value becomes " +
                         in_quotes(value.substr(0, field.longest)));
  }

  void check_number() {
    const bool digits = entry_.value.find_first_not_of(DIGITS) == string::npos;
    if (digits && entry_.value.size() < 10) return;
    add("number-none", in_quotes(entry_.value) + " is no number: the program takes it for " +
                           std::to_string(number_or_zero(entry_.value)) + "; write digits alone");
  }

  void check_version_value() {
    string_view rest = entry_.value;
    string read;
    bool none = false;
    bool ignored = false;
    for (int piece = 0; piece < 3; ++piece) {
      const std::size_t dot = std::min(rest.find('.'), rest.size());
      const string_view text = rest.substr(0, dot);
      const std::size_t digits = std::min(text.find_first_not_of(DIGITS), text.size());
      const bool given = piece == 0 || !text.empty() || dot < rest.size();
      none = none || (given && (digits == 0 || digits > 9));
      ignored = ignored || digits < text.size();
      if (piece < 2 || number_or_zero(text) != 0) {
        read += (piece == 0 ? "" : ".") + std::to_string(number_or_zero(text));
      }
      rest.remove_prefix(std::min(dot + 1, rest.size()));
    }
    if (none || entry_.value.ends_with('.')) {
      add("version-none", in_quotes(entry_.value) + " is no version: the program takes it for " +
                              read + "; write up to three numbers with full stops between them");
    } else if (ignored || !rest.empty()) {
      add("version-rest",
          "of version " + in_quotes(entry_.value) + " the program takes " + read +
              " and ignores the rest: write up to three numbers with full stops between them");
    }
  }

  void check_list(const description_field& field) {
    const std::vector<string_view> words = split_words(entry_.value, WHITE_SPACE);
    const bool levels = entry_.keyword == KEYWORD_REQUIRED_PATCHES;
    const bool files = entry_.keyword == KEYWORD_NEEDS_FILES;
    const auto is_joined = [levels, files](string_view word) {
      if (levels) return word.find_first_not_of(DIGITS) != string_view::npos;
      const std::size_t separator = word.find_first_of(",;");
      // The name of a file may hold one.
      return files ? separator == 0 || word.ends_with(',') || word.ends_with(';')
                   : separator != string_view::npos;
    };
    const auto joined = std::ranges::find_if(words, is_joined);
    if (joined != words.end()) {
      add("list-separator", in_quotes(*joined) +
                                " is one word of the list: only blanks separate; write " +
                                (levels ? "levels such as \"0 1\"" : "\"a b\""));
    } else if (levels && WHITE_SPACE.find(entry_.value.front()) != string_view::npos) {
      add("list-separator",
          "a blank before the first level makes it count twice: begin the list with a digit");
    }
    const auto no_command = std::ranges::find_if(words, [](string_view word) {
      return word.starts_with('-') || word.find('/') != string_view::npos;
    });
    if (entry_.keyword == KEYWORD_NEEDED_TOOLS && no_command != words.end()) {
      add("tool-name", in_quotes(*no_command) +
                           " is never found: a tool is looked for by its name in each directory " +
                           "of the PATH; write names of commands alone");
    }
    if (field.most != 0 && words.size() > field.most) {
      add("list-too-long", "the program keeps " + std::to_string(field.most) +
                               " words of this list, and leaves out " +
                               in_quotes(words[field.most]) + " and what is behind it");
    }
    for (const string_view word : words) check_length(field, word);
  }

  const located_entry& entry_;
  const string& file_;
  finding_list& findings_;
};

}  // namespace

void check_value(const located_entry& entry, const string& file, finding_list& findings) {
  value_checks(entry, file, findings).check();
}

}  // namespace morvane
