#include "console/header.h"

#include "console/printer.h"
#include "messages/table.h"
#include "text/format.h"

namespace morvane {

namespace {

void print_framed(std::string_view text) {
  print_with_cr2(text, screen_width(), r[LEFT_FRAME], r[RIGHT_FRAME]);
}

void print_line(std::string_view line) {
  print(fill("%s\n", {line}));
}

}  // namespace

void show_install_header() {
  print_line(r[RULER]);
  print_framed("\n");
  print_line(r[HEADER_TITLE]);
  print_framed("\n");
  print_line(r[HEADER_SUBTITLE]);
  print_framed("\n");
  print_framed(fill("%s%s%s%s%s\n", {r[HEADER_TEXT_1], r[HEADER_TEXT_2], r[HEADER_TEXT_3],
                                     r[HEADER_TEXT_4], r[HEADER_TEXT_5]}));
  print_framed("\n");
  print_line(r[RULER]);
}

}  // namespace morvane
