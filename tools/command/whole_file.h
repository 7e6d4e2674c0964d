// Writing a file as a whole, or not at all.
#ifndef MORVANE_COMMAND_WHOLE_FILE_H
#define MORVANE_COMMAND_WHOLE_FILE_H

#include <string>
#include <string_view>

namespace morvane {

// Puts a file with `content` at `path`: whoever opens it finds what was there before or all of
// this. Returns false, with `errno` telling why, where that fails; `path` then is as it was. Only a
// plain file is replaced.
bool write_whole_file(const std::string& path, std::string_view content);

}  // namespace morvane

#endif  // MORVANE_COMMAND_WHOLE_FILE_H
