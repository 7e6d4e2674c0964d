// The identification of the program.
#ifndef MORVANE_VERSION_VERSION_H
#define MORVANE_VERSION_VERSION_H

#include <string_view>

namespace morvane {

// The name under which the program speaks, whatever name it was started under.
inline constexpr std::string_view PROGRAM_NAME = "morvane";

// The identification text in the head of every generated file, in the form that `what` finds.
inline constexpr std::string_view SCCSid = " @(#)morvane\t1.20\t95/06/08 ";

}  // namespace morvane

#endif  // MORVANE_VERSION_VERSION_H
