#include "platform/signals.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>

#include "text/text.h"

namespace morvane {

namespace {

constexpr std::array SIGNALS = {SIGINT, SIGQUIT, SIGTERM, SIGHUP};

// The two scratch files and the file being written. Changed only while the signals are held back;
// in fixed places, since a handler of signals can count on no other memory.
std::array<text<64>, 3> files_to_remove;

void remove_files() {
  for (const auto& file : files_to_remove) {
    if (!file.empty()) unlink(file.c_str());
  }
}

// Gives a command that was just started a moment, at most a second: its shell may be about to
// create a file that was removed.
void await_command() {
  constexpr timespec MOMENT = {.tv_sec = 0, .tv_nsec = 10'000'000};
  for (int moments = 0; moments < 100 && waitpid(-1, nullptr, WNOHANG) == 0; ++moments) {
    nanosleep(&MOMENT, nullptr);
  }
}

// Runs with the signal's default action in force again: raised once more, it ends the program.
void end_after_removal(int signal) {
  remove_files();
  await_command();
  remove_files();
  raise(signal);
}

}  // namespace

void handle_signals() {
  struct sigaction handling = {};
  handling.sa_handler = end_after_removal;
  handling.sa_flags = static_cast<int>(SA_RESETHAND);
  sigemptyset(&handling.sa_mask);
  for (const int signal : SIGNALS) {
    struct sigaction before;
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
      sigaction(signal, &handling, nullptr);
    }
  }
}

void remove_on_signal(const std::string& path) {
  const signals_held held;
  keep_on_signal(path);
  const auto free = std::find(files_to_remove.begin(), files_to_remove.end(), "");
  if (free != files_to_remove.end()) *free = path;
}

void keep_on_signal(const std::string& path) {
  const signals_held held;
  std::replace(files_to_remove.begin(), files_to_remove.end(), text<64>(path), text<64>());
}

void end_by_signal(int signal) {
  remove_files();
  std::signal(signal, SIG_DFL);
  raise(signal);
  std::_Exit(128 + signal);  // where it was started with the signal held back
}

signals_held::signals_held() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : SIGNALS) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, &before_);
}

signals_held::~signals_held() {
  sigprocmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace morvane
