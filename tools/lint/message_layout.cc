#include "lint/message_layout.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "messages/numbers.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

constexpr std::size_t SCREEN_COLUMNS = 80;
constexpr std::size_t SCREEN_LINES = 24;

// What stands on the screen of the selection: these texts, beside the list with its headings, empty
// lines and the answer. A list of some length must have room there.
constexpr std::array<message_number, 4> SELECTION_TEXTS = {PRODUCT_LIST_HEADING, HOW_TO_SELECT_1,
                                                           HOW_TO_SELECT_2, HOW_TO_SELECT_3};
constexpr std::size_t SELECTION_LINES = 5;
constexpr std::size_t LISTED_PRODUCTS = 11;

// Texts that are printed on one line, with a blank between them.
constexpr std::array<std::pair<message_number, message_number>, 2> JOINED = {
    {{NO_RIGHTS, NO_RIGHTS_OWNER}, {NO_RIGHTS, NO_RIGHTS_GROUP}}};

// Returns the length of the longest line of a text, as it is on the screen.
std::size_t width(string_view text) {
  constexpr std::size_t TAB = 8;
  std::size_t widest = 0;
  std::size_t column = 0;
  for (const char c : text) {
    if (c == '\t') {
      column += TAB - column % TAB;
    } else {
      column = c == '\n' ? 0 : column + 1;
    }
    widest = std::max(widest, column);
  }
  return widest;
}

// Tells whether lines of any width will do: commands, and what is broken into lines.
bool is_of_any_width(message_kind kind) {
  return kind == message_kind::COMMAND || kind == message_kind::PARAGRAPH;
}

class layout_checks {
 public:
  layout_checks(const string& name, const message_file& file, finding_list& findings)
      : name_(name),
        file_(file),
        findings_(findings),
        ruler_(file.has(RULER) ? file.text(RULER).size() : SCREEN_COLUMNS - 1) {}

  void check() {
    for (const message_description& message : MESSAGES) {
      if (file_.has(message.number)) check_message(message);
    }
    check_ruler();
    check_joined();
    check_paragraphs();
    check_height();
  }

 private:
  void add(check_id id, int number, string text) {
    findings_.add(id, name_, file_.place(number), std::move(text));
  }

  void check_message(const message_description& message) {
    const string_view text = file_.text(message.number);
    if (message.kind == message_kind::TITLE) {
      check_title(message.number, text);
    } else if (message.number != RULER && !is_of_any_width(message.kind)) {
      check_width(message.number, text);
    }
  }

  void check_width(int number, string_view text) {
    const std::size_t widest = width(text);
    if (widest <= ruler_) return;
    add("message-width", number,
        "a line of " + std::to_string(widest) +
            " characters, wider than the ruler, message 010, with " + std::to_string(ruler_) +
            ": put \\n into it");
  }

  void check_ruler() {
    if (ruler_ < SCREEN_COLUMNS) return;
    add("message-width", RULER,
        "the ruler has " + std::to_string(ruler_) +
            " characters: lines as wide do not fit a terminal of 80; make it 79 or shorter");
  }

  void check_joined() {
    for (const auto& [first, second] : JOINED) {
      if (!file_.has(first) || !file_.has(second)) continue;
      check_width(second, string(file_.text(first)) + " " + string(file_.text(second)));
    }
  }

  void check_title(int number, string_view text) {
    if (text.size() == ruler_ && text.starts_with(file_.text(LEFT_FRAME)) &&
        text.ends_with(file_.text(RIGHT_FRAME))) {
      return;
    }
    add("message-title", number,
        "this title line has " + std::to_string(text.size()) + " characters and the ruler " +
            std::to_string(ruler_) + ": make it as wide, in the frames of messages 008 and 009");
  }

  void check_paragraphs() {
    for (int number = HEADER_TEXT_1; number < HEADER_TEXT_5; ++number) {
      if (!file_.has(number) || !file_.has(number + 1)) continue;
      const string_view text = file_.text(number);
      const string_view next = file_.text(number + 1);
      if (is_continued(number)) continue;
      if (text.empty() || next.empty() || is_blank(text.back()) || is_blank(next.front())) continue;
      add("message-joined", number,
          "the next message is joined to this one without a blank: end it with ' |'");
    }
  }

  // Tells whether the line behind a message is none, and may be meant to go on with it.
  bool is_continued(int number) const {
    const std::size_t line = file_.place(number).line;
    return line < file_.lines.size() && number_of_line(file_.lines[line].written) == 0 &&
           !file_.lines[line].written.empty() && !file_.lines[line].written.starts_with('#');
  }

  static bool is_blank(char c) { return c == ' ' || c == '\n'; }

  void check_height() {
    std::size_t lines = SELECTION_LINES + LISTED_PRODUCTS;
    for (const message_number number : SELECTION_TEXTS) {
      if (!file_.has(number)) return;
      lines += 1 + static_cast<std::size_t>(std::ranges::count(file_.text(number), '\n'));
    }
    if (lines <= SCREEN_LINES) return;
    add("message-height", HOW_TO_SELECT_1,
        "messages 017, 018, 024 and 029 fill " + std::to_string(lines) +
            " lines together with a list of " + std::to_string(LISTED_PRODUCTS) +
            " products, and a terminal has 24: shorten them");
  }

  const string& name_;
  const message_file& file_;
  finding_list& findings_;
  std::size_t ruler_;
};

}  // namespace

void check_layout(const string& name, const message_file& file, finding_list& findings) {
  layout_checks(name, file, findings).check();
}

}  // namespace morvane
