// Runs a command and lets one of its system calls go wrong, counted over the command and all the
// processes that it starts.
//
//   system_calls REPORT CALL NUMBER FAULT VALUE COMMAND [ARGUMENT...]
//
//   REPORT   a file that tells what the fault struck, "struck CALL PID PROCESS OBJECT", and in the
//            end how many calls there were, in lines "count CALL NUMBER". Without a count it took
//            longer than TIME_LIMIT, and all processes were killed
//   CALL     a name of the table below, or "any"
//   NUMBER   which of these calls is struck, from 1; 0 for none
//   FAULT    error    the call fails with the errno VALUE
//            short    it reads or writes no more than VALUE bytes
//            signal   the signal VALUE arrives with it; a process that it stops goes on at once
//            group    the same for the command's process group, as from a terminal
//            meanwhile  the shell runs what MEANWHILE in the environment says before the call
//
// The command keeps its process id: the tracer is its child, and has ended once nobody holds the
// command's standard error any more. Calls of the dynamic loader do not count: what fails there
// fails the whole command, as if it could not be run. Returns SKIPPED where the host does not let a
// process be traced.
#include <cstdio>

constexpr int SKIPPED = 77;

#if defined(__linux__) && (defined(__x86_64__) || defined(__aarch64__))

#include <elf.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <system_error>
#include <vector>

namespace {

constexpr unsigned TIME_LIMIT = 40;              // seconds
constexpr std::uint64_t LOADER_SIZE = 1U << 18;  // bytes that the dynamic loader's code lies within
constexpr int CALL_STOP = SIGTRAP | 0x80;        // as PTRACE_O_TRACESYSGOOD marks it

// What a call acts on: the path that an argument points to, or its first argument, a descriptor.
enum object : std::size_t { PATH = 0, PATH_BEHIND_DIRECTORY = 1, DESCRIPTOR, NOTHING };

struct call {
  const char* name;
  long number;
  object acts_on;
};

constexpr call CALLS[] = {
    {"open", SYS_openat, PATH_BEHIND_DIRECTORY},
    {"read", SYS_read, DESCRIPTOR},
    {"write", SYS_write, DESCRIPTOR},
    {"close", SYS_close, DESCRIPTOR},
    {"list", SYS_getdents64, DESCRIPTOR},
    {"stat", SYS_newfstatat, PATH_BEHIND_DIRECTORY},
    {"stat", SYS_statx, PATH_BEHIND_DIRECTORY},
    {"stat", SYS_fstat, DESCRIPTOR},
    {"access", SYS_faccessat, PATH_BEHIND_DIRECTORY},
    {"access", SYS_faccessat2, PATH_BEHIND_DIRECTORY},
    {"unlink", SYS_unlinkat, PATH_BEHIND_DIRECTORY},
    {"rename", SYS_renameat, PATH_BEHIND_DIRECTORY},
    {"mkdir", SYS_mkdirat, PATH_BEHIND_DIRECTORY},
    {"change", SYS_fchmodat, PATH_BEHIND_DIRECTORY},
    {"change", SYS_fchmod, DESCRIPTOR},
    {"change", SYS_fchownat, PATH_BEHIND_DIRECTORY},
    {"change", SYS_utimensat, NOTHING},
    {"truncate", SYS_ftruncate, DESCRIPTOR},
    {"lock", SYS_flock, DESCRIPTOR},
    {"directory", SYS_chdir, PATH},
    {"directory", SYS_getcwd, NOTHING},
    {"memory", SYS_mmap, NOTHING},
    {"pipe", SYS_pipe2, NOTHING},
    {"process", SYS_clone, NOTHING},
    {"process", SYS_clone3, NOTHING},
    {"execute", SYS_execve, PATH},
    {"wait", SYS_wait4, NOTHING},
#ifdef __x86_64__
    {"open", SYS_open, PATH},
    {"stat", SYS_stat, PATH},
    {"stat", SYS_lstat, PATH},
    {"access", SYS_access, PATH},
    {"unlink", SYS_unlink, PATH},
    {"mkdir", SYS_mkdir, PATH},
    {"change", SYS_chmod, PATH},
    {"change", SYS_chown, PATH},
    {"pipe", SYS_pipe, NOTHING},
    {"process", SYS_fork, NOTHING},
    {"process", SYS_vfork, NOTHING},
#endif
};

// The registers of a stopped process that a fault changes.
using registers = user_regs_struct;
#ifdef __x86_64__
constexpr std::uint32_t ARCHITECTURE = AUDIT_ARCH_X86_64;
auto& result_in(registers& of) {
  return of.rax;
}
auto& third_argument_in(registers& of) {
  return of.rdx;
}
#else
constexpr std::uint32_t ARCHITECTURE = AUDIT_ARCH_AARCH64;
auto& result_in(registers& of) {
  return of.regs[0];
}
auto& third_argument_in(registers& of) {
  return of.regs[2];
}
#endif

registers read_registers(pid_t pid) {
  registers values = {};
  iovec place = {&values, sizeof values};
  ptrace(PTRACE_GETREGSET, pid, NT_PRSTATUS, &place);
  return values;
}

void write_registers(pid_t pid, registers values) {
  iovec place = {&values, sizeof values};
  ptrace(PTRACE_SETREGSET, pid, NT_PRSTATUS, &place);
}

// Has the call that `pid` is about to make not carried out.
void skip_call(pid_t pid) {
#ifdef __x86_64__
  registers values = read_registers(pid);
  values.orig_rax = static_cast<decltype(values.orig_rax)>(-1);
  write_registers(pid, values);
#else
  int none = -1;
  iovec place = {&none, sizeof none};
  ptrace(PTRACE_SETREGSET, pid, NT_ARM_SYSTEM_CALL, &place);
#endif
}

std::string process_file(pid_t pid, const std::string& name) {
  return "/proc/" + std::to_string(pid) + "/" + name;
}

std::string path_at(pid_t pid, std::uint64_t address) {
  std::ifstream memory(process_file(pid, "mem"), std::ios::binary);
  memory.seekg(static_cast<std::streamoff>(address));
  std::string path;
  std::getline(memory, path, '\0');
  return path;
}

std::string descriptor_and_file(pid_t pid, std::uint64_t number) {
  const std::string descriptor = std::to_string(number);
  std::error_code unknown;
  return descriptor + "=" +
         std::filesystem::read_symlink(process_file(pid, "fd/" + descriptor), unknown).string();
}

std::string object_of(const call& made, pid_t pid, const std::uint64_t* arguments) {
  if (made.acts_on == NOTHING) return "";
  const std::string path = made.acts_on == DESCRIPTOR ? "" : path_at(pid, arguments[made.acts_on]);
  return path.empty() ? descriptor_and_file(pid, arguments[0]) : path;
}

// Tells whether `address` lies in the dynamic loader of the program that `pid` runs.
bool is_in_loader(pid_t pid, std::uint64_t address) {
  std::ifstream vector(process_file(pid, "auxv"), std::ios::binary);
  Elf64_auxv_t entry;
  while (vector.read(reinterpret_cast<char*>(&entry), sizeof entry)) {
    if (entry.a_type == AT_BASE) return address - entry.a_un.a_val < LOADER_SIZE;
  }
  return false;
}

class tracer {
 public:
  tracer(char** arguments, pid_t command)
      : report_(arguments[1]),
        name_(arguments[2]),
        wanted_(std::atol(arguments[3])),
        fault_(arguments[4]),
        value_(std::atoi(arguments[5])),
        command_(command) {}

  // Lets all processes run until the last of them has ended.
  void run() {
    int status = 0;
    for (pid_t pid = 0; (pid = waitpid(-1, &status, __WALL)) > 0;) {
      if (WIFSTOPPED(status)) at_stop(pid, WSTOPSIG(status), status >> 16);
    }
    for (const auto& [name, count] : counts_) report_ << "count " << name << " " << count << "\n";
  }

 private:
  void at_stop(pid_t pid, int signal, int event) {
    const bool stays =
        signal == SIGSTOP || signal == SIGTSTP || signal == SIGTTIN || signal == SIGTTOU;
    if (event == PTRACE_EVENT_EXEC) started_ = true;  // it is the command from here on
    if (event == PTRACE_EVENT_SECCOMP) {
      const bool struck = started_ && counts_to(pid);
      ptrace(struck && strike(pid) ? PTRACE_SYSCALL : PTRACE_CONT, pid, 0, 0);
    } else if (signal == CALL_STOP) {
      behind_call(pid);
      ptrace(PTRACE_CONT, pid, 0, 0);
    } else if (event == PTRACE_EVENT_STOP && stays) {
      ptrace(PTRACE_LISTEN, pid, 0, 0);
      kill(fault_ == "group" ? -command_ : pid, SIGCONT);
    } else {
      ptrace(PTRACE_CONT, pid, 0, event == 0 ? signal : 0);
    }
  }

  // Counts the call that `pid` is about to make. Returns whether it is the one to be struck.
  bool counts_to(pid_t pid) {
    __ptrace_syscall_info info = {};
    ptrace(PTRACE_GET_SYSCALL_INFO, pid, sizeof info, &info);
    if (is_in_loader(pid, info.instruction_pointer)) return false;
    const auto* made = std::ranges::find(CALLS, static_cast<long>(info.seccomp.nr), &call::number);
    if (made == std::end(CALLS)) return false;
    ++counts_[made->name];
    if ((name_ != "any" && name_ != made->name) || ++count_ != wanted_) return false;
    std::string process;
    std::ifstream(process_file(pid, "comm")) >> process;
    report_ << "struck " << made->name << " " << pid << " " << process << " "
            << object_of(*made, pid, info.seccomp.args) << "\n"
            << std::flush;
    is_close_ = made->number == SYS_close;
    return true;
  }

  // Returns whether the call is to be stopped at once more, behind its end.
  bool strike(pid_t pid) {
    if (fault_ == "meanwhile") {
      report_ << "meanwhile " << std::system(std::getenv("MEANWHILE")) << "\n" << std::flush;
      return false;
    }
    if (fault_ == "signal" || fault_ == "group") {
      kill(fault_ == "group" ? -command_ : pid, value_);
      return false;
    }
    registers values = read_registers(pid);
    third_argument_ = third_argument_in(values);
    if (fault_ == "short") {
      third_argument_in(values) = std::min(third_argument_, static_cast<std::uint64_t>(value_));
      write_registers(pid, values);
    } else if (!is_close_) {  // which gives its descriptor up even where it fails
      skip_call(pid);
    }
    return true;
  }

  void behind_call(pid_t pid) {
    registers values = read_registers(pid);
    if (fault_ == "short") {
      third_argument_in(values) = third_argument_;
    } else {
      result_in(values) = static_cast<std::uint64_t>(-value_);
    }
    write_registers(pid, values);
  }

  std::ofstream report_;
  const std::string name_;
  const long wanted_;
  const std::string fault_;
  const int value_;
  const pid_t command_;
  bool started_ = false;
  long count_ = 0;
  std::map<std::string, long> counts_;
  bool is_close_ = false;             // the call that is struck
  std::uint64_t third_argument_ = 0;  // what it had there
};

// Has the kernel stop this process and its descendants at each call of the table, and only there.
bool stop_at_calls() {
  std::vector<sock_filter> program = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, ARCHITECTURE, 1, 0),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
  };
  for (const call& one : CALLS) {
    const sock_filter matching[] = {
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(one.number), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRACE)};
    program.insert(program.end(), std::begin(matching), std::end(matching));
  }
  program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 7) {
    std::fputs("usage: system_calls REPORT CALL NUMBER FAULT VALUE COMMAND [ARGUMENT...]\n",
               stderr);
    return 1;
  }
  int ready[2];
  if (pipe(ready) != 0) return 1;
  const pid_t command = getpid();
  prctl(PR_SET_PTRACER, PR_SET_PTRACER_ANY, 0, 0, 0);

  if (fork() == 0) {
    constexpr long OPTIONS = PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACESECCOMP |
                             PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK | PTRACE_O_TRACECLONE |
                             PTRACE_O_TRACEEXEC;
    tracer watching(arguments, command);
    alarm(TIME_LIMIT);
    if (ptrace(PTRACE_SEIZE, command, 0, OPTIONS) != 0 || write(ready[1], "", 1) != 1) return 1;
    for (const int descriptor : {STDIN_FILENO, ready[0], ready[1]}) close(descriptor);
    watching.run();
    return 0;
  }

  close(ready[1]);
  char byte = 0;
  if (read(ready[0], &byte, 1) != 1) return SKIPPED;
  close(ready[0]);
  // The tracer stays in the group that this process leaves.
  if (setpgid(0, 0) != 0 || !stop_at_calls()) return SKIPPED;
  execvp(arguments[6], arguments + 6);
  return 1;
}

#else

int main() {
  std::puts("system calls can be struck on Linux, on x86-64 and aarch64");
  return SKIPPED;
}

#endif
