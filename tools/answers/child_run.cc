#include "answers/child_run.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <new>

#include "console/leave.h"
#include "driver/catalogue_load.h"
#include "driver/installation_run.h"
#include "driver/start_up.h"
#include "platform/diagnostic.h"

namespace morvane {

namespace {

constexpr std::array SIGNALS = {SIGINT, SIGQUIT, SIGTERM, SIGHUP};

volatile pid_t child = 0;
bool in_child = false;

void pass_on(int signal) {
  if (child > 0) kill(child, signal);
}

// Has the signals that end a program reach the child alone while it lives.
class signals_passed_on {
 public:
  signals_passed_on() {
    struct sigaction action = {};
    action.sa_handler = pass_on;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < SIGNALS.size(); ++i) {
      sigaction(SIGNALS[i], nullptr, &before_[i]);
      if (before_[i].sa_handler != SIG_IGN) sigaction(SIGNALS[i], &action, nullptr);
    }
  }
  ~signals_passed_on() { restore(); }
  signals_passed_on(const signals_passed_on&) = delete;
  signals_passed_on& operator=(const signals_passed_on&) = delete;

  void restore() const {
    for (std::size_t i = 0; i < SIGNALS.size(); ++i) sigaction(SIGNALS[i], &before_[i], nullptr);
  }

 private:
  std::array<struct sigaction, SIGNALS.size()> before_;
};

[[noreturn]] void be_child(const child_output& output, const std::function<void()>& code) {
  in_child = true;
  const int nothing = open("/dev/null", O_RDONLY);
  const bool connected = nothing >= 0 && dup2(nothing, STDIN_FILENO) >= 0 &&
                         dup2(output.errors, STDERR_FILENO) >= 0 &&
                         dup2(output.screen, STDOUT_FILENO) >= 0;
  if (connected) code();
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

void run_program(product_table& table) {
  try {
    start_up();
    load_catalogue(table);
    run_installation(table);
  } catch (const std::bad_alloc&) {
    diagnose_exhausted_memory();
    quit();
  }
}

scratch_stream open_scratch_stream() {
  return {std::tmpfile(), [](std::FILE* stream) { return std::fclose(stream); }};
}

std::string content_of(const scratch_stream& stream) {
  std::rewind(stream.get());
  std::string content;
  std::array<char, 4096> block;
  std::size_t size = 0;
  while ((size = std::fread(block.data(), 1, block.size(), stream.get())) > 0) {
    content.append(block.data(), size);
  }
  return content;
}

bool run_in_child(const child_output& output, const std::function<void()>& code) {
  std::fflush(nullptr);  // else the child would write it once more
  const signals_passed_on passed_on;
  child = fork();
  if (child < 0) return false;
  if (child == 0) {
    passed_on.restore();
    be_child(output, code);
  }
  int status = 0;
  pid_t ended = -1;
  do {
    ended = waitpid(child, &status, 0);
  } while (ended < 0 && errno == EINTR);
  child = 0;
  return ended > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool operator_is_there() {
  return !in_child;
}

}  // namespace morvane
