// The reader of install.mk: the input is such a file.
#include "install_makefile/install_makefile.h"
#include "output/makefile_text.h"
#include "target.h"

using namespace morvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = as_text(data, size);
  const auto read = read_install_makefile(text);
  if (const auto* makefile = std::get_if<install_makefile>(&read)) {
    require(text.ends_with(makefile_text(makefile->directory, makefile->products)),
            "what is read says what the text says");
    return 0;
  }
  std::size_t lines = 2;  // the one behind the last included
  for (const char c : text) lines += c == '\n' ? 1 : 0;
  const std::size_t refused = std::get<std::size_t>(read);
  require(refused >= 1 && refused <= lines, "the refused line is one of the file");
  return 0;
}
