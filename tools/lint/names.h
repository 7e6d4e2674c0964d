// The checks of names that go into makefiles, settings and commands.
#ifndef MORVANE_LINT_NAMES_H
#define MORVANE_LINT_NAMES_H

#include <array>
#include <string_view>

#include "distribution/distribution.h"
#include "lint/finding_list.h"

namespace morvane {

// What install.mk calls its rules: for itself, and behind the identifier of each product.
inline constexpr std::array<std::string_view, 3> OWN_RULES = {"install", "products", "install.mk"};
inline constexpr std::array<std::string_view, 16> PRODUCT_RULES = {
    "-message",        "-new",        "-tar",        ".tar",      ".tar-contence", "-owner",
    "-group",          "-permission", "-inst-files", "-inst-dir", "-make",         "-dat-file",
    "-permission-old", "-owner-old",  "-group-old",  "-succeeded"};

// Of such a source make makes what is named without it.
inline constexpr std::array<std::string_view, 12> SOURCE_ENDINGS = {
    ".c", ".cc", ".C", ".cpp", ".f", ".p", ".sh", ".s", ".S", ".y", ".l", ".o"};

// Adds what is wrong with the names that a description gives.
void check_given_names(const read_description& description, finding_list& findings);

// Adds what is wrong with the identifiers of a distribution, and where names of rules coincide.
void check_rule_names(const distribution& looked_at, finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_NAMES_H
