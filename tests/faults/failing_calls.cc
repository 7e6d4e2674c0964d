// Shell commands and allocations that fail when the environment says so, linked into
// morvane_with_faults.
//
//   MORVANE_FAULT_COMMAND=N       the Nth shell command fails as MORVANE_FAULT_KIND says: exit1,
//                                 exit126, exit127, killed, unstarted, late (it does its work and
//                                 fails then), nothing, half, long, nul (what it writes)
//   MORVANE_FAULT_ALLOCATION=N    the Nth allocation fails; with MORVANE_FAULT_LASTING=1 all
//                                 further ones too
//   MORVANE_FAULT_REPORT=FILE     a file that tells, once the fault has struck, what it struck
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

namespace {

constexpr int LONG_LINE = 1000000;

long number_from(const char* variable) {
  const char* value = std::getenv(variable);
  return value == nullptr ? 0 : std::atol(value);
}

// Without allocations: memory may be what fails.
void report(const char* what) {
  const char* name = std::getenv("MORVANE_FAULT_REPORT");
  if (name == nullptr) return;
  const int file = open(name, O_WRONLY | O_CREAT | O_APPEND, 0600);
  if (file < 0) return;
  const bool written = write(file, what, std::strlen(what)) >= 0 && write(file, "\n", 1) == 1;
  close(file);
  if (!written) std::abort();
}

bool command_fails(const char* command) {
  static const long wanted = number_from("MORVANE_FAULT_COMMAND");
  static long count = 0;
  if (++count != wanted) return false;
  report(command);
  return true;
}

bool is_kind(const char* kind) {
  const char* wanted = std::getenv("MORVANE_FAULT_KIND");
  return wanted != nullptr && std::strcmp(wanted, kind) == 0;
}

// Returns a shell command that writes a faulty output in the place of that of `command`; an empty
// one where the fault is of another kind. `output` is what `command` writes to, standard output
// where it is empty.
std::string faulty_output(const std::string& command, const std::string& output) {
  const std::string redirection = output.empty() ? "" : " > " + output;
  if (is_kind("nothing")) return ":";
  if (is_kind("half")) {
    if (output.empty()) return "(" + command + ") | head -c 3";
    return command + "; size=$(wc -c < " + output + "); head -c $((size / 2)) " + output + " > " +
           output + ".half; cat " + output + ".half > " + output + "; 'rm' -f " + output + ".half";
  }
  if (is_kind("long")) {
    return "head -c " + std::to_string(LONG_LINE) + " /dev/zero | tr '\\0' x" + redirection;
  }
  if (is_kind("nul")) return "printf 'a\\0b\\n\\0\\n'" + redirection;
  return "";
}

std::string faulty_ending(const std::string& command) {
  if (is_kind("exit1")) return "exit 1";
  if (is_kind("exit126")) return "exit 126";
  if (is_kind("exit127")) return "exit 127";
  if (is_kind("killed")) return "kill -KILL $$";
  if (is_kind("late")) return "(" + command + "); exit 1";
  std::abort();
}

// Returns the scratch file that `command` writes to, or an empty text.
std::string scratch_file_of(const std::string& command) {
  const std::string name = "/tmp/" + std::to_string(getpid()) + ".tmp";
  return command.find(" 1> " + name) == std::string::npos ? "" : name;
}

bool allocation_fails() {
  static const long wanted = number_from("MORVANE_FAULT_ALLOCATION");
  static const bool lasting = number_from("MORVANE_FAULT_LASTING") != 0;
  static long count = 0;
  if (wanted == 0) return false;
  ++count;
  if (count == wanted) report("allocation");
  return count == wanted || (lasting && count > wanted);
}

template <typename function>
function* next_definition(const char* name) {
  return reinterpret_cast<function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

int system(const char* command) {
  static auto* const real = next_definition<int(const char*)>("system");
  if (!command_fails(command)) return real(command);
  if (is_kind("unstarted")) return -1;
  const std::string output = faulty_output(command, scratch_file_of(command));
  return real((output.empty() ? faulty_ending(command) : output).c_str());
}

FILE* popen(const char* command, const char* mode) {
  static auto* const real = next_definition<FILE*(const char*, const char*)>("popen");
  if (!command_fails(command)) return real(command, mode);
  if (is_kind("unstarted")) return nullptr;
  const std::string output = faulty_output(command, "");
  return real((output.empty() ? faulty_ending(command) : output).c_str(), mode);
}

}  // extern "C"

void* operator new(std::size_t size) {
  void* const block = allocation_fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
