// Files of answers, read and written as a whole.
#ifndef MORVANE_ANSWERS_TEXT_FILE_H
#define MORVANE_ANSWERS_TEXT_FILE_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

// Returns the content of the file `path`, and at most a byte beyond `longest` of it; nothing, and
// `errno` tells why, where it cannot be read.
std::optional<std::string> read_text_file(const std::string& path, std::size_t longest);

// Tells whether a file `path` can be created or replaced; where not, `errno` tells why.
bool may_put_file(const std::string& path);

// Makes `content` that of the file `path`, at once: whoever reads it sees all or nothing of it.
// Returns whether that worked; where not, `errno` tells why and what was there stays.
bool put_text_file(const std::string& path, std::string_view content);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_TEXT_FILE_H
