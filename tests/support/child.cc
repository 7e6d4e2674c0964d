#include "support/child.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace morvane {

namespace {

// A pipe between parent and child.
struct channel {
  int read_end = -1;
  int write_end = -1;

  channel() {
    int ends[2];
    if (pipe(ends) != 0) std::abort();
    read_end = ends[0];
    write_end = ends[1];
  }
};

// Puts `input` into a file without a name and returns its descriptor, at the start.
int input_descriptor(std::string_view input) {
  std::FILE* file = std::tmpfile();
  if (file == nullptr) std::abort();
  std::fwrite(input.data(), 1, input.size(), file);
  std::rewind(file);
  return fileno(file);
}

[[noreturn]] void run_child(std::string_view input, const channel& out, const channel& err,
                            const channel& result, const std::function<std::string()>& code) {
  dup2(input_descriptor(input), STDIN_FILENO);
  dup2(out.write_end, STDOUT_FILENO);
  dup2(err.write_end, STDERR_FILENO);
  for (const channel* each : {&out, &err, &result}) close(each->read_end);
  close(out.write_end);
  close(err.write_end);
  std::setvbuf(stdin, nullptr, _IOFBF, BUFSIZ);
  // A terminator, so that an empty result differs from none.
  std::string text;
  try {
    text = code() + '\0';
  } catch (...) {  // else the child would go on with the other tests
    std::abort();
  }
  std::fflush(stdout);
  if (write(result.write_end, text.data(), text.size()) < 0) std::abort();
  std::exit(0);
}

}  // namespace

scratch_directory::scratch_directory() : before_(std::filesystem::current_path()) {
  std::string pattern = "/tmp/morvane-test-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  path_ = pattern;
  std::filesystem::current_path(path_);
}

scratch_directory::~scratch_directory() {
  std::filesystem::current_path(before_);
  std::filesystem::remove_all(path_);
}

void write_file(const std::filesystem::path& path, std::string_view content) {
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
  std::ofstream(path) << content;
}

std::string read_file(const std::filesystem::path& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

outcome in_child(std::string_view input, const std::function<std::string()>& code) {
  std::fflush(nullptr);
  const channel out, err, result;
  const pid_t child = fork();
  if (child < 0) std::abort();
  if (child == 0) run_child(input, out, err, result, code);
  for (const channel* each : {&out, &err, &result}) close(each->write_end);

  outcome seen;
  std::array<pollfd, 3> open = {
      {{out.read_end, POLLIN, 0}, {err.read_end, POLLIN, 0}, {result.read_end, POLLIN, 0}}};
  std::string* const texts[] = {&seen.out, &seen.err, &seen.result};
  for (int left = 3; left > 0;) {
    poll(open.data(), open.size(), -1);
    for (std::size_t i = 0; i < open.size(); ++i) {
      if (open[i].revents == 0) continue;
      std::array<char, 4096> block;
      const ssize_t count = read(open[i].fd, block.data(), block.size());
      if (count <= 0) {
        close(open[i].fd);
        open[i].fd = -1;
        --left;
        continue;
      }
      const std::string_view piece(block.data(), static_cast<std::size_t>(count));
      *texts[i] += piece;
    }
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) seen.status = WEXITSTATUS(status);
  seen.returned = seen.result.ends_with('\0');
  if (seen.returned) seen.result.pop_back();
  std::filesystem::remove("/tmp/" + std::to_string(child) + ".tmp");
  std::filesystem::remove("/tmp/" + std::to_string(child) + ".tmp1");
  return seen;
}

int signal_ending(const std::function<void()>& code) {
  const pid_t child = fork();
  if (child == 0) {
    for (const int each : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) std::signal(each, SIG_DFL);
    code();
    std::_Exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

outcome in_child_in_order(std::string_view input, const std::function<std::string()>& code) {
  return in_child(input, [&] {
    dup2(STDOUT_FILENO, STDERR_FILENO);
    return code();
  });
}

}  // namespace morvane
