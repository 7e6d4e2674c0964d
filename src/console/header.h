// The framed header at the start of a run.
#ifndef MORVANE_CONSOLE_HEADER_H
#define MORVANE_CONSOLE_HEADER_H

namespace morvane {

// Prints the header: title, subtitle and a paragraph in a box as wide as the screen.
void show_install_header();

}  // namespace morvane

#endif  // MORVANE_CONSOLE_HEADER_H
