// Writing JSON: what is written here is read by others.
#ifndef MORVANE_REPORT_JSON_H
#define MORVANE_REPORT_JSON_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace morvane {

// Builds one JSON value, indented. In an object each value follows its key.
class json_writer {
 public:
  void begin_object() { begin('{'); }
  void end_object() { end('}'); }
  void begin_array() { begin('['); }
  void end_array() { end(']'); }
  void key(std::string_view name);
  void value(std::string_view text);
  void value(std::uint64_t number);

  // The same for a member of an object.
  void member(std::string_view name, std::string_view text);
  void member(std::string_view name, std::uint64_t number);

  // Adds a member that is true or false.
  void flag(std::string_view name, bool is_set);

  // Returns what was built, and a newline.
  std::string text() const { return text_ + "\n"; }

 private:
  void begin(char bracket);
  void end(char bracket);
  void separate();
  void start_line();
  void quote(std::string_view text);

  std::string text_;
  std::size_t depth_ = 0;
  bool first_ = true;  // in its array or object
  bool behind_key_ = false;
};

}  // namespace morvane

#endif  // MORVANE_REPORT_JSON_H
