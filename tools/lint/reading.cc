#include "lint/reading.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/description_keywords.h"
#include "catalogue/description_reader.h"
#include "lint/byte_checks.h"
#include "lint/description_fields.h"
#include "lint/encoding.h"
#include "lint/own_messages.h"
#include "lint/spelling.h"
#include "lint/suppression.h"
#include "lint/value_checks.h"
#include "messages/table.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

constexpr string_view LINE_BLANKS = " \t\r";

string keyword_text(message_number keyword) {
  return string(r[keyword]);
}

std::vector<string_view> lines_of(string_view text) {
  std::vector<string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

string_view without_leading(string_view text, string_view characters) {
  text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
  return text;
}

// An entry as it is written, behind its keyword.
struct written_value {
  bool equals = false;
  bool quoted = false;
  bool closed = false;  // a quoted value
  string_view rest;     // behind the value, blanks and comments left out
};

written_value split(string_view text, std::size_t keyword_length) {
  written_value written;
  text = without_leading(text.substr(std::min(keyword_length, text.size())), LINE_BLANKS);
  written.equals = text.starts_with('=');
  if (!written.equals) return written;
  text = without_leading(text.substr(1), LINE_BLANKS);
  written.quoted = text.starts_with('"');
  const std::size_t end = written.quoted ? text.find('"', 1) : text.find_first_of(LINE_BLANKS);
  written.closed = written.quoted && end != string_view::npos;
  if (end == string_view::npos || text.starts_with('#')) return written;
  written.rest = without_leading(text.substr(end + (written.quoted ? 1 : 0)), LINE_BLANKS);
  if (written.rest.starts_with('#')) written.rest = "";
  return written;
}

// Something that the parser met: an entry, a comment or a fault.
struct event {
  place_in_file place;
  const located_entry* entry = nullptr;
  const located_fault* fault = nullptr;

  bool is_comment() const { return entry != nullptr && entry->keyword == message_number{}; }
};

bool comes_before(const event& a, const event& b) {
  return a.place.line != b.place.line ? a.place.line < b.place.line
                                      : a.place.column < b.place.column;
}

// Returns what the parser met, in its order. A fault of a value stands before its entry.
std::vector<event> events_of(const read_description& description) {
  std::vector<event> events;
  for (const located_fault& fault : description.faults) events.push_back({fault.place, {}, &fault});
  for (const located_entry& entry : description.entries)
    events.push_back({entry.place, &entry, {}});
  std::ranges::stable_sort(events, comes_before);
  return events;
}

std::vector<string_view> keyword_texts() {
  std::vector<string_view> texts;
  texts.reserve(std::size(KEYWORDS));
  for (const keyword& each : KEYWORDS) texts.push_back(r[each.number]);
  return texts;
}

// Returns the keyword that says of a needed product what `keyword` says of the product itself.
message_number keyword_of_need(message_number keyword) {
  switch (keyword) {
    case KEYWORD_VERSION:
      return KEYWORD_NEEDS_VERSION;
    case KEYWORD_PATCH:
      return KEYWORD_NEEDS_PATCH;
    case KEYWORD_CATEGORY:
      return KEYWORD_NEEDS_CATEGORY;
    case KEYWORD_TYPE:
      return KEYWORD_NEEDS_TYPE;
    case KEYWORD_PATH:
      return KEYWORD_NEEDS_PATH;
    default:
      return {};
  }
}

// Checks one description.
class line_checks {
 public:
  line_checks(const read_description& description, finding_list& findings)
      : description_(description),
        findings_(findings),
        lines_(lines_of(description.text)),
        events_(events_of(description)),
        next_entry_(events_.size()) {
    std::size_t next = events_.size();
    for (std::size_t i = events_.size(); i-- > 0;) {
      if (!events_[i].is_comment()) next = i;
      next_entry_[i] = next;
    }
  }

  void check() {
    check_bytes(description_, lines_, findings_);
    for (std::size_t i = 0; i < events_.size(); ++i) {
      const event& met = events_[i];
      if (met.is_comment()) {
        check_comment(*met.entry, i);
      } else if (met.entry != nullptr) {
        check_entry(*met.entry);
        check_empty_text(i);
        last_entry_ = i;
      } else {
        check_fault(*met.fault);
      }
      seen_on_line_ = met.place.line;
    }
  }

 private:
  void add(check_id id, const place_in_file& place, string text) {
    findings_.add(id, description_.file, place, std::move(text));
  }

  // Returns the line from `place` on.
  string_view text_at(const place_in_file& place) const {
    if (place.line > lines_.size()) return "";
    const string_view line = lines_[place.line - 1];
    return line.substr(std::min(place.column - 1, line.size()));
  }

  void check_comment(const located_entry& comment, std::size_t index) {
    if (lines_.size() >= comment.place.line) {
      // The newline counts as well, but is harmless where it is left.
      const string_view rest = text_at(comment.place);
      constexpr std::size_t SKIPPED = 255;
      if (rest.size() > SKIPPED + 1) {
        add("comment-too-long", {comment.place.line, comment.place.column + SKIPPED + 1},
            "the comment has more than 255 bytes, and is read as an entry from here on: break "
            "it into lines");
      }
    }
    take_suppression(comment, index);
  }

  // A suppression reaches up to the next entry, and, above the first one, to the whole file.
  void take_suppression(const located_entry& comment, std::size_t index) {
    std::optional<allowance> allowed =
        allowance_of_comment(comment.value, description_.file, comment.place, findings_);
    if (!allowed) return;
    const std::size_t next = next_entry_[index];
    const bool heads_the_file = index < next_entry_[0];
    allowed->first = heads_the_file ? 1 : comment.place.line;
    allowed->last = next == events_.size() ? comment.place.line : events_[next].place.line;
    findings_.allow(std::move(*allowed));
  }

  void check_fault(const located_fault& fault) {
    switch (fault.kind) {
      case fault_kind::UNKNOWN_KEYWORD:
        check_unknown(fault);
        break;
      case fault_kind::NO_ROOM_FOR_TARGET:
        add_too_many_parts(fault.place);
        break;
      case fault_kind::OUTSIDE_TARGET:
        // The entries of a part that there is no room for are reported by the program, too.
        if (parts_ <= TARGETS) {
          add("keyword-misplaced", fault.place,
              in_quotes(fault.keyword) +
                  " belongs to a part, and none is open: the program leaves it " +
                  "out; put it behind a " + in_quotes(r[KEYWORD_TARGET]));
        }
        break;
      case fault_kind::OUTSIDE_NEED:
        check_outside_need(fault);
        break;
      case fault_kind::VALUE_TOO_LONG:
        add("value-too-long", fault.place,
            "the value of " + in_quotes(fault.keyword) + " has more than " +
                std::to_string(LONGEST_VALUE) + " bytes: the program cuts it, or reads the rest " +
                "as further entries; shorten it");
        break;
      case fault_kind::QUOTE_NOT_CLOSED:
        break;  // is seen in every line that lacks it
      case fault_kind::CANNOT_BE_READ:
        add("description-unreadable", WHOLE_FILE,
            "the description cannot be read: without it the program does not offer the product");
        break;
    }
  }

  // What follows on a line that something was wrong with, or that an entry stands on, comes of
  // that.
  void check_unknown(const located_fault& fault) {
    if (seen_on_line_ == fault.place.line) return;
    if (fault.keyword.empty()) {
      if (fault.place.line == 1 && begins_with_mark(description_.text)) return;
      add("keyword-none", fault.place,
          "a line that begins with no keyword, and is skipped: write KEYWORD = VALUE, or '#' "
          "before a comment");
      return;
    }
    const bool fixed =
        fault.keyword == r[KEYWORD_FIXED_OWNERS] || fault.keyword == r[KEYWORD_FIXED_GROUPS];
    if (fixed) {
      add("keyword-disabled", fault.place,
          in_quotes(fault.keyword) + " is no keyword behind a " +
              in_quotes(r[KEYWORD_DESCRIPTION_STATE]) + " other than 0: remove one of them");
      return;
    }
    add("keyword-unknown", fault.place,
        "no such keyword: " + in_quotes(fault.keyword) + what_is_meant(fault));
  }

  // Returns the rest of a sentence about a word that is no keyword.
  string what_is_meant(const located_fault& fault) const {
    const std::vector<string_view> texts = keyword_texts();
    if (const string_view meant = nearest(fault.keyword, texts); !meant.empty()) {
      return ", did you mean " + in_quotes(meant) + "?";
    }
    // A keyword in two words, or with a hyphen.
    string joined;
    for (const char c : text_at(fault.place)) {
      if (c == '=') break;
      if (string_view(" \t-_").find(c) == string_view::npos) joined += c;
    }
    if (const string_view meant = nearest(joined, texts); !meant.empty()) {
      return ", did you mean " + in_quotes(meant) + "?";
    }
    if (const message_number number = own_keyword(fault.keyword); number != message_number{}) {
      return ", which message " + std::to_string(number) + " of the message file calls " +
             in_quotes(r[number]);
    }
    return ", and the line is skipped";
  }

  void check_outside_need(const located_fault& fault) {
    if (parts_ > TARGETS || needs_ > CATEGORIES) return;  // for which there was no room
    if (fault.entry == KEYWORD_NEEDS_TYPE && needs_ > 0) {
      add("types-too-many", fault.place,
          "a needed product has at most 10 types: this one is left out, and its entries are taken "
          "for the tenth");
      return;
    }
    const message_number opening = field_of(fault.entry).level == nesting::TYPE &&
                                           fault.entry != KEYWORD_NEEDS_TYPE && needs_ > 0
                                       ? KEYWORD_NEEDS_TYPE
                                       : KEYWORD_NEEDS_CATEGORY;
    add("keyword-misplaced", fault.place,
        in_quotes(fault.keyword) + " belongs to what " + in_quotes(r[opening]) +
            " opens, and nothing is " + "open: the program leaves it out; put it behind one");
  }

  void check_entry(const located_entry& entry) {
    const description_field& field = field_of(entry.keyword);
    const string_view text = text_at(entry.place);
    const written_value written = split(text, r[entry.keyword].size());
    if (!written.equals) {
      add("equals-missing", entry.place,
          in_quotes(r[entry.keyword]) +
              " without '=': its value is empty, and the rest of the line is " +
              "read as another entry; write " + keyword_text(entry.keyword) + " = VALUE");
      note_opened(entry, field);
      return;
    }
    if (written.quoted && !written.closed && entry.value.size() < LONGEST_VALUE) {
      add("quote-missing", entry.place,
          "the closing quote is missing: the value is the rest of the line, " +
              in_quotes(entry.value) + "; end it with a double quote on this line");
    } else if (written.quoted && !written.rest.empty()) {
      add("text-behind-quote", entry.place,
          "what stands behind the closing quote is ignored: " + in_quotes(written.rest) +
              "; a value cannot hold a double quote");
    } else if (!written.quoted && !written.rest.empty()) {
      add("text-unquoted", entry.place,
          "several words without quotes: the value is " + in_quotes(entry.value) + ", and " +
              in_quotes(written.rest) + " is read as another entry; " + advice_for_words(field));
    }
    note_opened(entry, field);
    check_repeated(entry, field);
    check_value(entry, description_.file, findings_);
  }

  static string advice_for_words(const description_field& field) {
    if (field.kind == value_kind::OPENING)
      return "write one word, and another line for another one";
    if (field.kind == value_kind::NUMBER || field.kind == value_kind::VERSION) {
      return "write it without blanks";
    }
    return "put the value between double quotes";
  }

  // A line of a text may be empty, but not the whole text.
  void check_empty_text(std::size_t index) {
    const located_entry& entry = *events_[index].entry;
    if (!entry.value.empty() || field_of(entry.keyword).kind != value_kind::LINES) return;
    const auto goes_on = [&](std::size_t other) {
      return other < events_.size() && events_[other].entry != nullptr &&
             events_[other].entry->keyword == entry.keyword;
    };
    const std::size_t next = index + 1 < events_.size() ? next_entry_[index + 1] : events_.size();
    if (goes_on(next) || goes_on(last_entry_)) return;
    add("value-empty", entry.place,
        in_quotes(r[entry.keyword]) + " is a text without words: give one, or remove the line");
  }

  void note_opened(const located_entry& entry, const description_field& field) {
    if (field.kind != value_kind::OPENING) return;
    if (entry.value.empty()) {
      add("value-empty", entry.place,
          in_quotes(r[entry.keyword]) + " without a value opens nothing: what follows belongs to " +
              "what was open before");
      return;
    }
    std::erase_if(given_,
                  [&](const auto& each) { return field_of(each.first).level >= field.level; });
    if (entry.keyword == KEYWORD_TARGET) {
      needs_ = 0;
      if (++parts_ == TARGETS + 1) add_too_many_parts(entry.place);
    } else if (entry.keyword == KEYWORD_NEEDS_CATEGORY && ++needs_ == CATEGORIES + 1) {
      add("needs-too-many", entry.place,
          "a part has at most 10 needed products: from this one on they are left out");
    }
  }

  void add_too_many_parts(const place_in_file& place) {
    add("parts-too-many", place,
        "a product has at most 12 parts: this one and its entries are left out");
  }

  void check_repeated(const located_entry& entry, const description_field& field) {
    if (field.kind == value_kind::OPENING || field.kind == value_kind::LINES) return;
    const auto [before, is_new] = given_.emplace(entry.keyword, entry.place.line);
    if (is_new) return;
    const string first = std::to_string(before->second);
    const message_number of_need = keyword_of_need(entry.keyword);
    if (needs_ > 0 && of_need != message_number{}) {
      add("entry-repeated", entry.place,
          "a second " + in_quotes(r[entry.keyword]) + " of the product, the first is in line " +
              first + ": did you mean " + in_quotes(r[of_need]) + "?");
    } else if (field.kind == value_kind::LIST) {
      add("list-repeated", entry.place,
          "a second " + in_quotes(r[entry.keyword]) + ", the first is in line " + first +
              ": the two are mixed up; write one list");
    } else {
      add("entry-repeated", entry.place,
          "a second " + in_quotes(r[entry.keyword]) + ", which replaces that of line " + first +
              ": remove one");
    }
  }

  const read_description& description_;
  finding_list& findings_;
  std::vector<string_view> lines_;
  std::vector<event> events_;
  std::vector<std::size_t> next_entry_;          // for each event, the next one that is no comment
  std::size_t last_entry_ = events_.size();      // the last entry that was looked at, if any
  std::size_t seen_on_line_ = 0;                 // the line of the last event
  std::size_t parts_ = 0;                        // opened so far
  std::size_t needs_ = 0;                        // opened so far in the part
  std::map<message_number, std::size_t> given_;  // entries of what is open, with their lines
};

}  // namespace

void check_reading(const read_description& description, finding_list& findings) {
  if (description.too_long) {
    findings.add("description-unreadable", description.file, WHOLE_FILE,
                 "the description is longer than one mebibyte, and was not read");
    return;
  }
  if (is_of_wide_characters(description.text)) {
    findings.add("byte-order-mark", description.file, WHOLE_FILE,
                 "the file is UTF-16, of which the program reads nothing: save it as ASCII");
    return;
  }
  line_checks(description, findings).check();
}

}  // namespace morvane
