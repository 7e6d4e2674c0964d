#include "messages/table.h"

#include <string>

#include "text/format.h"
#include "text/number.h"
#include "text/text.h"

namespace morvane {

message_table r;
bool rscok = false;

namespace {

// What is longer is read in pieces; each further piece counts as a line of its own.
constexpr std::size_t LONGEST_PIECE = 299;

constexpr std::size_t TEXT_COLUMN = 4;  // counted from 0; the column before it holds anything
constexpr std::size_t LONGEST_LINE = TEXT_COLUMN + MESSAGE_SIZE;

// Returns the byte that a backslash followed by `c` stands for.
char unescape(char c) {
  switch (c) {
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    case 'f':
      return '\f';
    case 'v':
      return '\v';
    case 'b':
      return '\b';
    case 'e':
      return '\033';
    case '?':
      return '\177';
    default:  // also "a": no message rings the bell
      return c;
  }
}

// Returns the text that `raw` stands for: escapes resolved, and a final bar removed, which lets a
// text end in blanks. The bar is looked for in the result: an escape does not save it.
std::string decode(std::string_view raw) {
  std::string text;
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] != '\\') {
      text += raw[i];
    } else if (++i < raw.size()) {
      text += unescape(raw[i]);
    }
  }
  if (text.ends_with('|')) text.pop_back();
  return text;
}

void read_line(std::string_view line, message_table& table) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.size() < TEXT_COLUMN) return;
  line = line.substr(0, LONGEST_LINE);
  const int number = number_or_zero(line);
  if (number < 1 || number >= MESSAGE_COUNT) return;
  table.store(number, decode(line.substr(TEXT_COLUMN)));
}

}  // namespace

std::string_view message_table::operator[](int number) const {
  return block_.data() + static_cast<std::size_t>(number) * MESSAGE_SIZE;
}

void message_table::store(int number, std::string_view text) {
  char* slot = block_.data() + static_cast<std::size_t>(number) * MESSAGE_SIZE;
  text.copy(slot, text.size());
  slot[text.size()] = '\0';
}

void read_messages(input_file& file, message_table& table) {
  for (int number = 0; number < MESSAGE_COUNT; ++number) {
    table.store(number, fill("No resource #%d!\n", {number}));
  }
  std::string line;
  while (file.peek() != input_file::END) {
    line.clear();
    file.read_line(LONGEST_PIECE, line);
    read_line(until_nul(line), table);
  }
}

bool read_resource() {
  input_file file(RESOURCE_FILE);
  if (!file.is_open()) return false;
  read_messages(file, r);
  rscok = true;
  return true;
}

}  // namespace morvane
