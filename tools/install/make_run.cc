#include "install/make_run.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "install/host_checks.h"

namespace morvane {

namespace {

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

}  // namespace

bool run_make(const std::string& id, const descriptor& output) {
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
  const int error =
      posix_spawnp(&child, make.c_str(), files.actions(), nullptr, arguments, environ);
  if (error != 0) {
    dprintf(output.number(), "%s: %s\n", make.c_str(), std::strerror(error));
    return false;
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace morvane
