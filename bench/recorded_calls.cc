// system() and popen() that append to the file MORVANE_RECORD what they ran: a letter for the call
// (s or p), the exit status, a blank, the command and a NUL. Linked into morvane_recording.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

template <typename function>
function* next_definition(const char* name) {
  return reinterpret_cast<function*>(dlsym(RTLD_NEXT, name));
}

void record(char call, int status, const std::string& command) {
  std::FILE* file = std::fopen(std::getenv("MORVANE_RECORD"), "a");
  if (file == nullptr) std::abort();
  std::fprintf(file, "%c%d %s", call, status, command.c_str());
  std::fputc('\0', file);
  if (std::fclose(file) != 0) std::abort();
}

std::string piped_command;  // one pipe is open at a time

}  // namespace

extern "C" {

int system(const char* command) {
  static auto* const real = next_definition<int(const char*)>("system");
  const int status = real(command);
  record('s', status, command);
  return status;
}

FILE* popen(const char* command, const char* mode) {
  static auto* const real = next_definition<FILE*(const char*, const char*)>("popen");
  piped_command = command;
  return real(command, mode);
}

int pclose(FILE* pipe) {
  static auto* const real = next_definition<int(FILE*)>("pclose");
  const int status = real(pipe);
  record('p', status, piped_command);
  return status;
}

}  // extern "C"
