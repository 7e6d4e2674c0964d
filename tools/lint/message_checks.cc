#include "lint/message_checks.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/description_keywords.h"
#include "messages/numbers.h"
#include "messages/table.h"
#include "platform/input_file.h"
#include "report/finding.h"
#include "text/format.h"
#include "text/number.h"
#include "text/text.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

constexpr std::size_t LONGEST_LINE = 154;  // what is beyond is cut
constexpr std::size_t LONGEST_TEXT = MESSAGE_SIZE - 1;
constexpr std::size_t MOST_LINES = 10'000;
constexpr std::size_t MOST_BYTES_OF_A_LINE = 4096;

// Returns what the program does with a message, or null where it does not use the number.
const message_description* find_message(int number) {
  const auto found = std::ranges::find(MESSAGES, number, &message_description::number);
  return found == std::end(MESSAGES) ? nullptr : &*found;
}

// Tells whether lines of any width will do: commands, and what is broken into lines.
bool is_of_any_width(message_kind kind) {
  return kind == message_kind::COMMAND || kind == message_kind::PARAGRAPH;
}

// Tells whether such a text is no word of a language.
bool is_technical(message_kind kind) {
  return kind == message_kind::COMMAND || kind == message_kind::KEYWORD ||
         kind == message_kind::NAME || kind == message_kind::NUMBER;
}

struct message_line {
  std::size_t line = 0;
  string written;  // without its newline
};

struct message_file {
  std::vector<message_line> lines;                  // all, comments too
  std::map<int, std::vector<std::size_t>> numbers;  // with the lines that they stand in
  std::unique_ptr<message_table> table = std::make_unique<message_table>();

  string_view text(int number) const { return (*table)[number]; }
  bool has(int number) const { return numbers.contains(number); }
  place_in_file place(int number) const { return {numbers.at(number).back(), 1}; }
};

// Returns the number of the message in a line, or 0.
int number_of(string_view line) {
  if (line.size() < 4) return 0;
  const int number = number_or_zero(line);
  return number >= 1 && number < MESSAGE_COUNT ? number : 0;
}

std::optional<message_file> read_file(const string& path) {
  message_file read;
  input_file file(path);
  if (!file.is_open()) return std::nullopt;
  while (file.peek() != input_file::END && read.lines.size() < MOST_LINES) {
    message_line& taken = read.lines.emplace_back();
    taken.line = file.place().line;
    file.read_line(MOST_BYTES_OF_A_LINE, taken.written);
    if (taken.written.ends_with('\n')) taken.written.pop_back();
    const int number = number_of(until_nul(taken.written));
    if (number != 0) read.numbers[number].push_back(taken.line);
  }
  if (file.error() != 0) return std::nullopt;
  input_file again(path);
  read_messages(again, *read.table);
  return read;
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

// Returns the length of the longest line of a text.
std::size_t width(string_view text) {
  std::size_t widest = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    widest = std::max(widest, end);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return widest;
}

string shown_number(int number) {
  const string digits = std::to_string(number);
  return string(3 - digits.size(), '0') + digits;
}

// Checks one message file.
class message_checks {
 public:
  message_checks(const string& name, const message_file& file, finding_list& findings)
      : name_(name), file_(file), findings_(findings) {}

  void check() {
    for (const message_line& line : file_.lines) check_line(line);
    check_numbers();
    for (const message_description& message : MESSAGES) {
      if (file_.has(message.number)) check_message(message);
    }
    check_letters();
    check_keywords();
  }

 private:
  void add(check_id id, const place_in_file& place, string text) {
    findings_.add(id, name_, place, std::move(text));
  }

  void check_line(const message_line& line) {
    const string& written = line.written;
    const auto other = std::ranges::find_if(written, [](char c) { return c < 0; });
    if (other != written.end()) {
      add("message-not-ascii", {line.line, static_cast<std::size_t>(other - written.begin()) + 1},
          "a byte that is no ASCII: each counts as a column, so that lines lose their shape");
    }
    const int number = number_of(until_nul(written));
    if (number == 0) return;
    const bool three_digits = std::all_of(written.begin(), written.begin() + 3,
                                          [](char c) { return c >= '0' && c <= '9'; });
    if (!three_digits || written[3] != ' ') {
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
    const string_view text = file_.text(message.number);
    const std::size_t ruler = file_.has(RULER) ? file_.text(RULER).size() : text.size();
    if (message.kind == message_kind::FORMAT) check_format(message, text);
    if (message.kind == message_kind::TITLE) {
      check_title(message.number, text, ruler);
    } else if (const std::size_t widest = width(text);
               widest > ruler && !is_of_any_width(message.kind)) {
      add("message-width", file_.place(message.number),
          "a line of " + std::to_string(widest) +
              " characters, wider than the ruler, message 010, " + "with " + std::to_string(ruler) +
              ": put \\n into it");
    }
  }

  void check_format(const message_description& message, string_view text) {
    const auto found = std::ranges::count_if(conversions(text), &conversion::takes_argument);
    if (found == message.texts) return;
    add("message-conversions", file_.place(message.number),
        "this format has " + std::to_string(found) + " conversions such as '%s', and gets " +
            std::to_string(message.texts) + " texts: write as many, in their order");
  }

  void check_title(int number, string_view text, std::size_t ruler) {
    if (text.size() == ruler && text.starts_with(file_.text(LEFT_FRAME)) &&
        text.ends_with(file_.text(RIGHT_FRAME))) {
      return;
    }
    add("message-title", file_.place(number),
        "this title line has " + std::to_string(text.size()) + " characters and the ruler " +
            std::to_string(ruler) + ": make it as wide, in the frames of messages 008 and 009");
  }

  void check_letters() {
    if (!file_.has(ANSWER_LETTERS)) return;
    const string_view letters = file_.text(ANSWER_LETTERS);
    std::set<int> different;
    for (const char c : letters) {
      if (std::isalpha(static_cast<unsigned char>(c)) != 0) {
        different.insert(std::tolower(static_cast<unsigned char>(c)));
      }
    }
    if (letters.size() == 3 && different.size() == 3) return;
    add("message-letters", file_.place(ANSWER_LETTERS),
        "yes, no and quit are " + quoted(letters) + ": give three different letters");
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
            "no entry can have the keyword " + quoted(word) + ": use letters and underscores");
      } else if (!is_new) {
        add("message-keyword", file_.place(each.number),
            "keyword " + quoted(word) + " is message " + shown_number(before->second) +
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
  const std::optional<message_file> read = read_file(file);
  if (!read) return false;
  message_checks(file, *read, findings).check();
  return true;
}

bool check_translation(const string& file, const string& original, finding_list& findings) {
  const std::optional<message_file> read = read_file(file);
  const std::optional<message_file> other = read_file(original);
  if (!read || !other) return false;
  for (const message_description& message : MESSAGES) {
    const int number = message.number;
    if (!read->has(number) || !other->has(number)) continue;
    const string_view text = read->text(number);
    const string_view meant = other->text(number);
    if (is_technical(message.kind)) {
      if (text != meant) {
        findings.add("message-translated", file, read->place(number),
                     "message " + shown_number(number) + " is no word of a language: it stays " +
                         quoted(meant));
      }
    } else if (text.starts_with('\n') != meant.starts_with('\n') ||
               text.ends_with('\n') != meant.ends_with('\n')) {
      findings.add("message-new-lines", file, read->place(number),
                   "message " + shown_number(number) +
                       " begins or ends otherwise than the original, as to new lines");
    }
  }
  return true;
}

}  // namespace morvane
