#include "install/make_run.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "install/host_checks.h"

namespace morvane {

namespace {

// The signals that this command ignores: make and what it runs do not.
constexpr std::array IGNORED = {SIGPIPE, SIGXFSZ};

// How a child deals with signals.
class child_signals {
 public:
  explicit child_signals(const sigset_t& mask) {
    sigset_t ignored;
    sigemptyset(&ignored);
    for (const int signal : IGNORED) sigaddset(&ignored, signal);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setsigdefault(&attributes_, &ignored);
    posix_spawnattr_setsigmask(&attributes_, &mask);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  }
  ~child_signals() { posix_spawnattr_destroy(&attributes_); }
  child_signals(const child_signals&) = delete;
  child_signals& operator=(const child_signals&) = delete;

  const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

// What a child has at its standard input, output and error.
class child_files {
 public:
  explicit child_files(int output) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions_, output, STDERR_FILENO);
  }
  ~child_files() { posix_spawn_file_actions_destroy(&actions_); }
  child_files(const child_files&) = delete;
  child_files& operator=(const child_files&) = delete;

  const posix_spawn_file_actions_t* actions() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

// Tells whether a signal that ends make came before make was there to hear it.
bool is_to_end() {
  sigset_t pending;
  return sigpending(&pending) == 0 && sigismember(&pending, SIGTERM) == 1;
}

}  // namespace

bool run_make(const std::string& id, const descriptor& output, const sigset_t& mask) {
  // Else a make that this command was started by could have jobs run side by side.
  setenv("MAKEFLAGS", "", 1);
  setenv("MFLAGS", "", 1);
  std::string make = make_program();
  std::string file_option = "-f";
  std::string makefile = "install.mk";
  std::string target = id;
  char* arguments[] = {make.data(), file_option.data(), makefile.data(), target.data(), nullptr};
  const child_files files(output.number());
  pid_t child = 0;
  const child_signals signals(mask);
  const int error =
      posix_spawnp(&child, make.c_str(), files.actions(), signals.attributes(), arguments, environ);
  if (error != 0) {
    dprintf(output.number(), "%s: %s\n", make.c_str(), std::strerror(error));
    return false;
  }
  if (is_to_end()) kill(child, SIGTERM);
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace morvane
