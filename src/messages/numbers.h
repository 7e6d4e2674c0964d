// The names of the messages, what the program does with each, and the list of them all.
#ifndef MORVANE_MESSAGES_NUMBERS_H
#define MORVANE_MESSAGES_NUMBERS_H

#include <string_view>

namespace morvane {

// What the program does with a message, and thus what its text must be.
enum class message_kind {
  TEXT,          // printed, by itself or as a piece of a line or question
  TITLE,         // a line as wide as the ruler
  PARAGRAPH,     // joined to the next of its kind, and broken into lines
  HEAD_LINE,     // a comment line of the files written: without a newline
  PRODUCT_TYPE,  // stands for the type of a product: fits where types do
  FORMAT,        // filled with texts
  LETTERS,       // of the answers
  KEYWORD,       // of descriptions: letters and underscores
  NAME,          // of what lies on hosts or stands in descriptions
  NUMBER,        // decimal
  COMMAND,       // run by the shell, by itself or as a piece
};

// The number of a message. That of a format has a type of its own: its text cannot be taken from
// the table of the messages, only be filled, with as many texts as it takes.
enum message_number : int {
#define MESSAGE(value, name, kind) name = (value),
#define FORMAT(value, name, count)
#include "messages/messages.def"
};

template <int COUNT>
struct message_format {
  message_number number;
};

#define MESSAGE(value, name, kind)
// A name that is declared stands in no parentheses: NOLINTBEGIN(bugprone-macro-parentheses)
#define FORMAT(value, name, count) \
  inline constexpr message_format<(count)> name{static_cast<message_number>(value)};
// NOLINTEND(bugprone-macro-parentheses)
#include "messages/messages.def"

struct message_description {
  int number;
  std::string_view name;
  message_kind kind;
  int texts;  // that fill it, where it is a format
};

inline constexpr message_description MESSAGES[] = {
#define MESSAGE(value, name, kind) {value, #name, message_kind::kind, 0},
#define FORMAT(value, name, count) {value, #name, message_kind::FORMAT, count},
#include "messages/messages.def"
};

}  // namespace morvane

#endif  // MORVANE_MESSAGES_NUMBERS_H
