// Receipts: the input is the file.
#include "receipt/receipt.h"

#include "receipt/receipt_reader.h"
#include "receipt/receipt_writer.h"
#include "target.h"
#include "tree/directory.h"

namespace {

using namespace morvane;

void check_entry(const receipt_entry& entry) {
  require(!entry.path.starts_with('/'), "a path lies below the directory");
  require(normal_path(entry.path) == entry.path, "a path leads nowhere else");
  require(entry.path.find('\0') == std::string::npos, "a path is one for the system, too");
  require((entry.kind == file_kind::LINK) == !entry.target.empty(), "links alone have a target");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view content = as_text(data, size);
  const auto reading = read_receipt(content);
  if (const auto* fault = std::get_if<receipt_fault>(&reading)) {
    std::size_t lines = 1;
    for (const char c : content) lines += c == '\n' ? 1 : 0;
    require(fault->line >= 1 && fault->line <= lines, "a fault has its line");
    return 0;
  }
  const receipt& read = std::get<receipt>(reading);
  require(receipt_text(read) == content, "what was read is written as it was");
  for (std::size_t i = 0; i < read.entries.size(); ++i) {
    check_entry(read.entries[i]);
    require(i == 0 || read.entries[i - 1].path < read.entries[i].path, "entries are sorted");
    require(find_entry(read, read.entries[i].path) == &read.entries[i], "entries are found");
  }
  return 0;
}
