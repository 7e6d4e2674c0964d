// Writing a file as a whole, or not at all.
#ifndef MORVANE_COMMAND_WHOLE_FILE_H
#define MORVANE_COMMAND_WHOLE_FILE_H

#include <string>
#include <string_view>

#include "platform/file.h"

namespace morvane {

// Puts a file with `content` at `path`: whoever opens it finds what was there before or all of
// this. Returns false, with `errno` telling why, where that fails; `path` then is as it was. Only a
// plain file is replaced.
bool write_whole_file(const std::string& path, std::string_view content);

// The same for the file `name` in an open directory, where others may put what they like: it gets
// that mode, and `group` unless that is negative.
bool write_whole_file_in(const descriptor& directory, const std::string& name,
                         std::string_view content, unsigned mode, int group);

}  // namespace morvane

#endif  // MORVANE_COMMAND_WHOLE_FILE_H
