// Runs a target over recorded inputs without a fuzzer: replay PATH..., each a file or a directory
// of files. Ends abnormally at the first input that the target rejects; returns 1 where there was
// none at all.
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "target.h"

namespace {

std::vector<std::filesystem::path> files_of(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void replay(const std::filesystem::path& path) {
  dprintf(STDOUT_FILENO, "%s\n", path.c_str());
  std::ifstream file(path, std::ios::binary);
  morvane::require(file.is_open(), "the input can be read");
  const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<std::filesystem::path> inputs;
  for (int i = 1; i < count; ++i) {
    for (const auto& file : files_of(std::filesystem::absolute(arguments[i]))) {
      inputs.push_back(file);
    }
  }
  LLVMFuzzerInitialize(&count, &arguments);
  for (const auto& input : inputs) replay(input);
  return inputs.empty() ? 1 : 0;
}
