// Opening files that others may have put in the place of those the program expects.
#ifndef MORVANE_PLATFORM_FILE_H
#define MORVANE_PLATFORM_FILE_H

#include <cstdio>
#include <string>

namespace morvane {

// Opens `path` for reading and returns its descriptor, or -1 where it cannot be opened. Nothing is
// waited for: a named pipe without a writer reads as empty. A device, which might never end, cannot
// be opened.
int open_for_reading(const std::string& path);

// Opens `path` for writing, created or emptied, and returns its descriptor, or -1 where it cannot
// be opened. Nothing is waited for: a named pipe without a reader cannot be opened.
int open_for_writing(const std::string& path);

// Returns a stream for an open descriptor, in a mode of fopen. Throws bad_alloc where memory is
// exhausted.
std::FILE* stream_of(int descriptor, const char* mode);

// Tells whether both paths name the same file or directory, links followed.
bool is_same_file(const std::string& a, const std::string& b);

}  // namespace morvane

#endif  // MORVANE_PLATFORM_FILE_H
