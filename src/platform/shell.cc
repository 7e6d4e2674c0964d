#include "platform/shell.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/diagnostic.h"
#include "platform/signals.h"
#include "text/text.h"

namespace morvane {

namespace {

// An interrupt that has ended a command was meant for the program: it ends in the same way.
// `status` is what the system says of the command.
void pass_on_interrupt(int status) {
  constexpr int ENDED_BY_SIGNAL = 128;  // what the shell adds to a signal's number
  for (const int signal : {SIGINT, SIGQUIT}) {
    const bool of_shell = WIFSIGNALED(status) && WTERMSIG(status) == signal;
    const bool of_command = WIFEXITED(status) && WEXITSTATUS(status) == ENDED_BY_SIGNAL + signal;
    if (of_shell || of_command) end_by_signal(signal);
  }
}

}  // namespace

bool run_command(const std::string& command) {
  std::fflush(stdout);
  const int status = std::system(command.c_str());
  pass_on_interrupt(status);
  return status == 0;
}

std::optional<std::string> first_line_of(const std::string& command, std::size_t longest) {
  std::fflush(stdout);
  std::FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return std::nullopt;
  std::string line;
  int c = EOF;
  while (line.size() < longest && (c = std::getc(pipe)) != EOF && c != '\n') {
    line += static_cast<char>(c);
  }
  pass_on_interrupt(pclose(pipe));
  if (line.empty() && c == EOF) return std::nullopt;
  return std::string(until_nul(line));
}

bool exists(std::string_view path) {
  return access(std::string(path).c_str(), F_OK) == 0;
}

std::string scratch_file() {
  return "/tmp/" + std::to_string(getpid()) + ".tmp";
}

std::string second_scratch_file() {
  return scratch_file() + "1";
}

descriptor create_scratch_file(const std::string& path) {
  constexpr int FLAGS = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  constexpr mode_t FOR_ITS_OWNER = S_IRUSR | S_IWUSR;
  unlink(path.c_str());
  remove_on_signal(path);
  descriptor file(open(path.c_str(), FLAGS, FOR_ITS_OWNER));
  if (file.is_open()) {
    fchmod(file.number(), FOR_ITS_OWNER);  // whatever the file-creation mask
  } else {
    keep_on_signal(path);
    diagnose_error("cannot create temporary file '" + path + "'");
  }
  return file;
}

std::optional<std::string> output_of(const std::string& command) {
  const std::string path = scratch_file();
  const descriptor file = create_scratch_file(path);
  if (!file.is_open()) return std::nullopt;
  std::optional<std::string> output;
  if (run_command(command) && is_file_at(path, file)) output = read_rest(file);
  run_command("'rm' -f " + path);
  unlink(path.c_str());  // where that failed
  keep_on_signal(path);
  if (output) output->resize(until_nul(*output).size());
  return output;
}

}  // namespace morvane
