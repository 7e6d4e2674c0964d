// Signals that end the program: what it does first, and when it holds them back.
#ifndef MORVANE_PLATFORM_SIGNALS_H
#define MORVANE_PLATFORM_SIGNALS_H

#include <csignal>
#include <string>

namespace morvane {

// From now on INT, QUIT, TERM and HUP first remove the files that `remove_on_signal` names, unless
// the program was started with the signal ignored.
void handle_signals();

// Has a signal that ends the program remove the file `path` first; `keep_on_signal` takes that
// back. At most three files at a time, with names of at most 63 bytes.
void remove_on_signal(const std::string& path);
void keep_on_signal(const std::string& path);

// Ends the program as `signal`, one of those above, would have ended it.
[[noreturn]] void end_by_signal(int signal);

// Holds the signals back while it lives; what arrives meanwhile takes effect at its end.
class signals_held {
 public:
  signals_held();
  ~signals_held();
  signals_held(const signals_held&) = delete;
  signals_held& operator=(const signals_held&) = delete;

 private:
  sigset_t before_;
};

}  // namespace morvane

#endif  // MORVANE_PLATFORM_SIGNALS_H
