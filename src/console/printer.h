// Printing to standard output.
#ifndef MORVANE_CONSOLE_PRINTER_H
#define MORVANE_CONSOLE_PRINTER_H

#include <string_view>

namespace morvane {

// Prints `text` as it is.
void print(std::string_view text);

// Returns the width of the screen in columns: the length of the ruler.
int screen_width();

// Prints `message` wrapped and justified into lines of `width` columns, `prefix` and `suffix`
// around each included (see `wrap`).
void print_with_cr2(std::string_view message, int width, std::string_view prefix,
                    std::string_view suffix);

// The same without frames.
void print_with_cr(std::string_view message, int width);

}  // namespace morvane

#endif  // MORVANE_CONSOLE_PRINTER_H
