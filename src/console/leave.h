// The one way out of the program.
#ifndef MORVANE_CONSOLE_LEAVE_H
#define MORVANE_CONSOLE_LEAVE_H

namespace morvane {

// The exit status: 1 until the operator has said yes to the last question.
extern unsigned char return_code;

// Prints the farewell and ends the program with `return_code`.
[[noreturn]] void quit();

}  // namespace morvane

#endif  // MORVANE_CONSOLE_LEAVE_H
