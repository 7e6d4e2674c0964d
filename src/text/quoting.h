// What the shell and make would interpret.
#ifndef MORVANE_TEXT_QUOTING_H
#define MORVANE_TEXT_QUOTING_H

#include <string>
#include <string_view>

namespace morvane {

// Returns `value` as one word of a shell command: as it stands where the shell gives none of its
// characters a meaning, in single quotes otherwise. An empty value stays empty, so that a command
// that needs it fails.
std::string quote(std::string_view value);

// Tells whether `name` holds characters that make or the shell would interpret: what stands in the
// makefile, where nothing is quoted, must hold none.
bool holds_special_characters(std::string_view name);

}  // namespace morvane

#endif  // MORVANE_TEXT_QUOTING_H
