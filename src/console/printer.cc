#include "console/printer.h"

#include <cstdio>

#include "messages/table.h"
#include "text/wrap.h"

namespace morvane {

void print(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

int screen_width() {
  return static_cast<int>(r[RULER].size());
}

void print_with_cr2(std::string_view message, int width, std::string_view prefix,
                    std::string_view suffix) {
  print(wrap(message, width, prefix, suffix));
}

void print_with_cr(std::string_view message, int width) {
  print_with_cr2(message, width, "", "");
}

}  // namespace morvane
