// What the fuzz targets share. A target is one `LLVMFuzzerTestOneInput`; it is driven by clang's
// libFuzzer, or by replay.cc under any compiler.
#ifndef MORVANE_FUZZ_TARGET_H
#define MORVANE_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

// Standard output and error of the code under test go to /dev/null; reports of failures do not.
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace morvane {

// Ends the process with `claim`, which does not hold for this input, where `holds` is false.
void require(bool holds, const char* claim);

inline std::string_view as_text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Takes the first line off `rest` and returns it without its newline.
std::string_view take_line(std::string_view& rest);

// A file in memory that is read.
using memory_file = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
memory_file open_memory(std::string_view content);

// Creates a directory of this process below TMPDIR (or /tmp), which is the current directory until
// the process ends and is then removed. Returns its path, which is of the same length every time.
const std::string& use_scratch_directory();

// Writes the file `name` in the current directory.
void write_file(const char* name, std::string_view content);

}  // namespace morvane

#endif  // MORVANE_FUZZ_TARGET_H
