#include "platform/shell.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "platform/diagnostic.h"
#include "platform/file.h"
#include "platform/text.h"
#include "version/version.h"

namespace morvane {

namespace {

// The characters that no shell interprets; a leading "~" is the exception.
constexpr std::string_view PLAIN_CHARACTERS =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_./-+,@~^";

std::optional<std::string> read_file(const std::string& path) {
  const int descriptor = open_for_reading(path);
  if (descriptor < 0) return std::nullopt;
  std::FILE* file = stream_of(descriptor, "r");
  std::string content;
  std::array<char, 4096> block;
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), file)) {
    content.append(block.data(), count);
  }
  std::fclose(file);
  return std::string(until_nul(content));
}

}  // namespace

bool run_command(const std::string& command) {
  std::fflush(stdout);
  return std::system(command.c_str()) == 0;
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
  pclose(pipe);
  if (line.empty() && c == EOF) return std::nullopt;
  return std::string(until_nul(line));
}

std::string quote(std::string_view value) {
  const bool plain = value.find_first_not_of(PLAIN_CHARACTERS) == std::string_view::npos;
  if (plain && !value.starts_with('~')) return std::string(value);
  std::string quoted = "'";
  for (const char c : value) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
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

bool create_scratch_file(const std::string& path) {
  unlink(path.c_str());
  const int descriptor =
      open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (descriptor < 0) {
    diagnose(std::string(PROGRAM_NAME) + " : error : cannot create temporary file '" + path +
             "'\n");
    return false;
  }
  fchmod(descriptor, S_IRUSR | S_IWUSR);  // whatever the file-creation mask
  close(descriptor);
  return true;
}

std::optional<std::string> output_of(const std::string& command) {
  const std::string file = scratch_file();
  if (!create_scratch_file(file)) return std::nullopt;
  std::optional<std::string> output;
  try {
    if (run_command(command)) output = read_file(file);
  } catch (const std::bad_alloc&) {
    diagnose_exhausted_memory();
    return std::nullopt;
  }
  run_command("'rm' -f " + file);
  unlink(file.c_str());  // where that failed
  return output;
}

}  // namespace morvane
