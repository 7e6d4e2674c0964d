// The message loader: the input is a message file.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "messages/table.h"
#include "target.h"
#include "text/number.h"

namespace {

using namespace morvane;

constexpr std::size_t LONGEST_PIECE = 299;  // of a line, its newline included

void load(std::string_view content, message_table& table) {
  const int file = memfd_create("messages", MFD_CLOEXEC);
  require(write(file, content.data(), content.size()) == static_cast<ssize_t>(content.size()) &&
              lseek(file, 0, SEEK_SET) == 0,
          "a file in memory can be written");
  input_file messages{descriptor(file)};
  read_messages(messages, table);
}

// Fills `named` with the numbers that stand at the start of a line; returns false where a line is
// so long that it is read in pieces, or holds a NUL.
bool find_numbers(std::string_view content, std::array<bool, MESSAGE_COUNT>& named) {
  while (!content.empty()) {
    const std::string_view line = take_line(content);
    if (line.size() >= LONGEST_PIECE || line.find('\0') != std::string_view::npos) return false;
    const int number = number_or_zero(line);
    if (number >= 0 && number < MESSAGE_COUNT) named[static_cast<std::size_t>(number)] = true;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view content = as_text(data, size);
  static message_table table;
  static message_table again;
  static const message_table fillers = [] {
    message_table empty;
    load("", empty);
    return empty;
  }();
  load(content, table);

  for (int number = 0; number < MESSAGE_COUNT; ++number) {
    const std::string_view text = table[number];
    require(text.data()[text.size()] == '\0', "a message ends with a NUL");
    require(static_cast<std::size_t>(number) * MESSAGE_SIZE + text.size() <=
                MESSAGE_COUNT * MESSAGE_SIZE,
            "a message ends in the table");
  }
  require(table[0] == fillers[0], "no line defines message 0");

  std::array<bool, MESSAGE_COUNT> named{};
  if (find_numbers(content, named)) {
    for (int number = 1; number < MESSAGE_COUNT; ++number) {
      const auto n = static_cast<std::size_t>(number);
      // The message before may reach into this slot with its end mark.
      if (named[n] || named[n - 1]) continue;
      require(table[number] == fillers[number], "a message that no line names is a filler");
    }
  }

  std::string more(content);
  if (!more.empty() && more.back() != '\n') more += '\n';
  more += "\n# no message\n    \n0   none\n500 none\n-1  none\n";
  load(more, again);
  for (int number = 0; number < MESSAGE_COUNT; ++number) {
    require(table[number] == again[number], "lines without a message number change nothing");
  }
  return 0;
}
