#include "lint/message_checks.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/description_keywords.h"
#include "catalogue/product.h"
#include "lint/answer_letters.h"
#include "lint/message_file.h"
#include "lint/message_layout.h"
#include "lint/shell_syntax.h"
#include "lint/suppression.h"
#include "messages/numbers.h"
#include "messages/table.h"
#include "report/finding.h"
#include "text/format.h"
#include "text/number.h"
#include "text/white_space.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

constexpr std::size_t LONGEST_LINE = 154;  // what is beyond is cut
constexpr std::size_t LONGEST_TEXT = MESSAGE_SIZE - 1;

// Returns what the program does with a message, or null where it does not use the number.
const message_description* find_message(int number) {
  const auto found = std::ranges::find(MESSAGES, number, &message_description::number);
  return found == std::end(MESSAGES) ? nullptr : &*found;
}

// Returns the number of bytes that a text has once its escapes are resolved and a bar removed.
std::size_t resolved_size(string_view raw) {
  std::size_t size = 0;
  char last = '\0';
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] == '\\' && ++i == raw.size()) break;
    last = raw[i];
    ++size;
  }
  return size - (last == '|' ? 1 : 0);
}

// Checks one message file.
class message_checks {
 public:
  message_checks(const string& name, const message_file& file, finding_list& findings)
      : name_(name), file_(file), findings_(findings) {}

  void check() {
    if (!is_text()) return;
    take_suppressions();
    for (const message_line& line : file_.lines) check_line(line);
    check_numbers();
    for (const message_description& message : MESSAGES) {
      if (file_.has(message.number)) check_message(message);
    }
    check_letters();
    check_keywords();
    check_commands();
    check_layout(name_, file_, findings_);
  }

 private:
  void add(check_id id, const place_in_file& place, string text) {
    findings_.add(id, name_, place, std::move(text));
  }

  // Tells whether it is worth while to look at the messages one by one.
  bool is_text() {
    const auto with_return = std::ranges::find_if(
        file_.lines, [](const message_line& line) { return line.written.ends_with('\r'); });
    if (file_.numbers.empty()) {
      add("message-none", WHOLE_FILE,
          "the file holds no messages: each is a line of three digits, a blank and the text, in "
          "ASCII");
    } else if (with_return != file_.lines.end()) {
      add("message-line-end", {with_return->line, with_return->written.size()},
          "lines end in a carriage return, which becomes a part of the texts: save the file with "
          "the line ends of Unix");
      return false;
    }
    return !file_.numbers.empty();
  }

  // A suppression reaches up to the next message.
  void take_suppressions() {
    std::size_t next = 0;
    for (std::size_t i = file_.lines.size(); i-- > 0;) {
      const message_line& line = file_.lines[i];
      if (number_of_line(line.written) != 0) next = line.line;
      if (!line.written.starts_with('#')) continue;
      std::optional<allowance> allowed = allowance_of_comment(string_view(line.written).substr(1),
                                                              name_, {line.line, 1}, findings_);
      if (!allowed) continue;
      allowed->first = line.line;
      allowed->last = std::max(next, line.line);
      findings_.allow(std::move(*allowed));
    }
  }

  void check_line(const message_line& line) {
    const string& written = line.written;
    const auto other = std::ranges::find_if(written, [](char c) { return c < 0; });
    if (other != written.end()) {
      add("message-not-ascii", {line.line, static_cast<std::size_t>(other - written.begin()) + 1},
          "a byte that is no ASCII: each counts as a column, so that lines lose their shape");
    }
    const int number = number_of_line(written);
    if (number == 0) {
      check_skipped(line);
      return;
    }
    const bool three_digits = std::all_of(written.begin(), written.begin() + 3,
                                          [](char c) { return c >= '0' && c <= '9'; });
    if (!three_digits || (written[3] != ' ' && written[3] != '\t')) {
      add("message-column", {line.line, 1},
          "this line is read as message " + shown_number(number) + ": begin a message with three " +
              "digits and a blank, and a comment with '#'");
      return;
    }
    if (written.size() > LONGEST_LINE) {
      add("message-cut", {line.line, LONGEST_LINE + 1},
          "the line has " + std::to_string(written.size()) +
              " bytes, and is cut here, behind the 154th: shorten it");
    }
    const std::size_t size = resolved_size(string_view(written).substr(0, LONGEST_LINE).substr(4));
    if (size > LONGEST_TEXT) {
      add("message-too-long", {line.line, 1},
          "the text has 150 bytes, which damages message " + shown_number(number + 1) +
              ": shorten it to 149");
    }
  }

  // What is skipped is meant for a comment, or goes on with the message of the line before.
  void check_skipped(const message_line& line) {
    const std::size_t begin = line.written.find_first_not_of(WHITE_SPACE);
    if (begin == string::npos || line.written[begin] == '#') return;
    add("message-skipped", {line.line, 1},
        "this line is no message, and is skipped: a message is one line, with \\n where its text "
        "breaks, and a comment begins with '#'");
  }

  void check_numbers() {
    for (const message_description& message : MESSAGES) {
      if (file_.has(message.number)) continue;
      add("message-missing", WHOLE_FILE,
          "message " + shown_number(message.number) +
              " is missing: where it is used, 'No resource #" + std::to_string(message.number) +
              "!' takes its place; add its line");
    }
    for (const auto& [number, lines] : file_.numbers) {
      if (find_message(number) == nullptr) {
        add("message-unused", {lines.back(), 1},
            "message " + shown_number(number) + " is not used: remove it, or correct the number");
      }
      if (lines.size() > 1) {
        add("message-repeated", {lines.back(), 1},
            "message " + shown_number(number) + " stands in line " +
                std::to_string(lines[lines.size() - 2]) + " already: this line counts");
      }
    }
  }

  void check_message(const message_description& message) {
    if (message.kind == message_kind::FORMAT) check_format(message, file_.text(message.number));
    if (message.kind == message_kind::NUMBER) check_number(message.number);
    if (message.kind == message_kind::HEAD_LINE) check_head_line(message.number);
    if (message.kind == message_kind::PRODUCT_TYPE) check_type(message.number);
  }

  void check_format(const message_description& message, string_view text) {
    const auto found = std::ranges::count_if(conversions(text), &conversion::takes_argument);
    if (found == message.texts) return;
    add("message-conversions", file_.place(message.number),
        "this format has " + std::to_string(found) + " conversions such as '%s', and gets " +
            std::to_string(message.texts) + " texts: write as many, in their order");
  }

  void check_number(int number) {
    const string_view text = file_.text(number);
    if (is_digits(text)) return;
    add("message-number", file_.place(number),
        in_quotes(text) + " is no number: the program takes it for " +
            std::to_string(number_or_zero(text)) + "; write digits alone");
  }

  void check_head_line(int number) {
    if (file_.text(number).find('\n') == string_view::npos) return;
    add("message-line", file_.place(number),
        "a comment of the files written, in which what is behind \\n is no comment: write one "
        "line");
  }

  void check_type(int number) {
    if (file_.text(number).size() <= name_text::LONGEST) return;
    add("message-type", file_.place(number),
        "this stands in the place of a type, and is cut at " + std::to_string(name_text::LONGEST) +
            " bytes: shorten it");
  }

  void check_commands() {
    for (const int number : {SITE_RIGHTS_COMMAND, SITE_HOST_COMMAND}) {
      if (file_.has(number)) check_command(number, file_.text(number));
    }
    if (!file_.has(LINKS_COMMAND_1) || !file_.has(LINKS_COMMAND_2) || !file_.has(LINKS_COMMAND_3)) {
      return;
    }
    check_command(LINKS_COMMAND_1, "links" + string(file_.text(LINKS_COMMAND_1)) +
                                       string(file_.text(LINKS_COMMAND_2)) +
                                       string(file_.text(LINKS_COMMAND_3)));
  }

  void check_command(int number, string_view text) {
    if (is_shell_syntax(text)) return;
    add("message-command", file_.place(number),
        "the shell cannot read the command " + in_quotes(text) + ": try it with 'sh -n'");
  }

  void check_letters() {
    if (!file_.has(ANSWER_LETTERS)) return;
    const string_view letters = file_.text(ANSWER_LETTERS);
    if (letters.size() != 3 || !are_different_letters(letters)) {
      add("message-letters", file_.place(ANSWER_LETTERS),
          "yes, no and quit are " + in_quotes(letters) + ": give three different letters");
    } else if (file_.has(ANSWER_HINT) &&
               answers_named(file_.text(ANSWER_HINT), letters).size() != 3) {
      add("message-hint", file_.place(ANSWER_HINT),
          "the hint behind questions does not name the answers " + in_quotes(letters) +
              " of message 001, each by itself");
    }
  }

  void check_keywords() {
    std::map<string_view, int> words;
    for (const keyword& each : KEYWORDS) {
      if (!file_.has(each.number)) continue;
      const string_view word = file_.text(each.number);
      const bool is_word = !word.empty() && std::ranges::all_of(word, [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
      });
      const auto [before, is_new] = words.emplace(word, each.number);
      if (!is_word) {
        add("message-keyword", file_.place(each.number),
            "no entry can have the keyword " + in_quotes(word) + ": use letters and underscores");
      } else if (!is_new) {
        add("message-keyword", file_.place(each.number),
            "keyword " + in_quotes(word) + " is message " + shown_number(before->second) +
                " already: one of them is never read");
      }
    }
  }

  const string& name_;
  const message_file& file_;
  finding_list& findings_;
};

}  // namespace

bool check_messages(const string& file, finding_list& findings) {
  const std::optional<message_file> read = read_message_file(file);
  if (!read) return false;
  message_checks(file, *read, findings).check();
  return true;
}

}  // namespace morvane
