// command_loop RECORD: runs the shell commands of a record (see recorded_calls.cc) in their order,
// and nothing else. Returns 1 where one of them ended otherwise than in the record: the two would
// not be comparable.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

int run_piped(const char* command) {
  std::FILE* pipe = popen(command, "r");
  if (pipe == nullptr) return -1;
  while (std::getc(pipe) != EOF) {
  }
  return pclose(pipe);
}

}  // namespace

int main(int, char** arguments) {
  std::ifstream record(arguments[1]);
  int differing = 0;
  char call;
  int status;
  std::string command;
  while (record >> call >> status && std::getline(record.ignore(1), command, '\0')) {
    const int got = call == 's' ? std::system(command.c_str()) : run_piped(command.c_str());
    if (got == status) continue;
    ++differing;
    std::fprintf(stderr, "status %d, not %d: %s\n", got, status, command.c_str());
  }
  return differing == 0 ? 0 : 1;
}
