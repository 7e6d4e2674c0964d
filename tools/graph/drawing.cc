#include "graph/drawing.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>
#include <utility>

#include "platform/file.h"

extern char** environ;

namespace morvane {

namespace {

using clock = std::chrono::steady_clock;

constexpr std::chrono::seconds PATIENCE(30);
constexpr std::chrono::milliseconds INTERVAL(10);

// Returns an open file without a name.
descriptor scratch_file() {
  std::string path = "/tmp/morvane-graph.XXXXXX";
  descriptor file(mkostemp(path.data(), O_CLOEXEC));
  if (file.is_open()) unlink(path.c_str());
  return file;
}

// Starts dot between two files; returns 0 or why that failed.
int start_dot(const descriptor& input, const descriptor& output, pid_t& child) {
  posix_spawn_file_actions_t files;
  int fault = posix_spawn_file_actions_init(&files);
  if (fault != 0) return fault;
  std::array<char, 4> name = {"dot"};
  std::array<char, 6> format = {"-Tsvg"};
  std::array<char*, 3> arguments = {name.data(), format.data(), nullptr};
  fault = posix_spawn_file_actions_adddup2(&files, input.number(), STDIN_FILENO);
  if (fault == 0) {
    fault = posix_spawn_file_actions_adddup2(&files, output.number(), STDOUT_FILENO);
  }
  if (fault == 0) {
    fault = posix_spawnp(&child, name.data(), &files, nullptr, arguments.data(), environ);
  }
  posix_spawn_file_actions_destroy(&files);
  return fault;
}

// Waits for `child`; returns its status, or nothing where it took too long and was ended.
std::optional<int> wait_for(pid_t child) {
  const clock::time_point end = clock::now() + PATIENCE;
  for (;;) {
    int status = 0;
    const pid_t ended = waitpid(child, &status, WNOHANG);
    if (ended == child) return status;
    if (ended < 0 && errno != EINTR) return -1;
    if (clock::now() >= end) break;
    std::this_thread::sleep_for(INTERVAL);
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  return std::nullopt;
}

}  // namespace

drawing draw_as_svg(const std::string& dot_text) {
  const descriptor input = scratch_file();
  const descriptor output = scratch_file();
  if (!input.is_open() || !output.is_open() || !replace_content(input, dot_text) ||
      lseek(input.number(), 0, SEEK_SET) != 0) {
    return {std::nullopt, std::string("/tmp: ") + std::strerror(errno)};
  }
  pid_t child = 0;
  const int fault = start_dot(input, output, child);
  if (fault == ENOENT) {
    return {std::nullopt, "there is no 'dot' to draw with: install the package 'graphviz'"};
  }
  if (fault != 0) return {std::nullopt, std::string("dot: ") + std::strerror(fault)};
  const std::optional<int> status = wait_for(child);
  if (!status) {
    return {std::nullopt,
            "dot took longer than 30 seconds: draw less with --product, or use --format=dot"};
  }
  if (*status != 0) return {std::nullopt, "dot could not draw the picture"};
  if (lseek(output.number(), 0, SEEK_SET) != 0) return {std::nullopt, std::strerror(errno)};
  std::optional<std::string> svg = read_rest(output);
  if (!svg) return {std::nullopt, std::strerror(errno)};
  return {std::move(svg), ""};
}

}  // namespace morvane
