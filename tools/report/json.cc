#include "report/json.h"

#include <cstdio>

namespace morvane {

void json_writer::key(std::string_view name) {
  separate();
  quote(name);
  text_ += ": ";
  behind_key_ = true;
}

void json_writer::value(std::string_view text) {
  separate();
  quote(text);
}

void json_writer::value(std::uint64_t number) {
  separate();
  text_ += std::to_string(number);
}

void json_writer::member(std::string_view name, std::string_view text) {
  key(name);
  value(text);
}

void json_writer::member(std::string_view name, std::uint64_t number) {
  key(name);
  value(number);
}

void json_writer::flag(std::string_view name, bool is_set) {
  key(name);
  separate();
  text_ += is_set ? "true" : "false";
}

void json_writer::begin(char bracket) {
  separate();
  text_ += bracket;
  ++depth_;
  first_ = true;
}

void json_writer::end(char bracket) {
  --depth_;
  if (!first_) start_line();
  first_ = false;
  text_ += bracket;
}

// Goes to where the next value or key stands.
void json_writer::separate() {
  if (!behind_key_ && depth_ > 0) {
    if (!first_) text_ += ',';
    start_line();
  }
  first_ = false;
  behind_key_ = false;
}

void json_writer::start_line() {
  text_ += '\n';
  text_.append(2 * depth_, ' ');
}

// A byte beyond ASCII is written as the character of its number: no text is lost, and what is
// written is valid whatever encoding the byte was of.
void json_writer::quote(std::string_view text) {
  text_ += '"';
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      text_ += '\\';
      text_ += c;
    } else if (c >= ' ' && c <= '~') {
      text_ += c;
    } else {
      char escape[7];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c) & 0xffU);
      text_ += escape;
    }
  }
  text_ += '"';
}

}  // namespace morvane
