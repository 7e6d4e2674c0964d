// Texts that several tests expect, and a look into others.
#ifndef MORVANE_TESTS_SUPPORT_TEXTS_H
#define MORVANE_TESTS_SUPPORT_TEXTS_H

#include <string>
#include <string_view>

namespace morvane {

// The question below a candidate for a need, in the test messages.
inline const std::string ACCEPT = "<277> <35>\n";

// What is said of an installation file that is not there.
inline std::string missing_file(const std::string& file) {
  return "morvane : warning : installation file './" + file + "' missing.\n";
}

inline bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace morvane

#endif  // MORVANE_TESTS_SUPPORT_TEXTS_H
