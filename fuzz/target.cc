#include "target.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // The streams, not the descriptors: fuzzer and sanitizers report on those.
  stdout = std::fopen("/dev/null", "w");
  stderr = std::fopen("/dev/null", "w");
  return 0;
}

namespace morvane {

void require(bool holds, const char* claim) {
  if (holds) return;
  dprintf(STDERR_FILENO, "does not hold: %s\n", claim);
  std::abort();
}

std::string_view take_line(std::string_view& rest) {
  const std::string_view line = rest.substr(0, rest.find('\n'));
  rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  return line;
}

memory_file open_memory(std::string_view content) {
  // A stream of no bytes needs an address all the same.
  void* bytes = const_cast<char*>(content.empty() ? "" : content.data());
  std::FILE* file = fmemopen(bytes, content.size(), "rb");
  require(file != nullptr, "a file in memory can be opened");
  return {file, std::fclose};
}

namespace {

struct scratch_directory {
  std::string path;

  scratch_directory() {
    const char* base = std::getenv("TMPDIR");
    path = std::string(base == nullptr ? "/tmp" : base) + "/morvane-fuzz-XXXXXX";
    require(mkdtemp(path.data()) != nullptr && chdir(path.c_str()) == 0, "there is a directory");
  }

  ~scratch_directory() {
    std::error_code failed;  // nobody to tell
    std::filesystem::current_path("/", failed);
    std::filesystem::remove_all(path, failed);
  }
};

}  // namespace

const std::string& use_scratch_directory() {
  static const scratch_directory scratch;
  return scratch.path;
}

void write_file(const char* name, std::string_view content) {
  std::FILE* file = std::fopen(name, "w");
  require(file != nullptr, "the file can be written");
  std::fwrite(content.data(), 1, content.size(), file);
  std::fclose(file);
}

}  // namespace morvane
