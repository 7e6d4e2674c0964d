// The checks of a message file beside the one that it is a translation of.
#ifndef MORVANE_LINT_TRANSLATION_CHECKS_H
#define MORVANE_LINT_TRANSLATION_CHECKS_H

#include <string>

#include "lint/finding_list.h"

namespace morvane {

// Adds where the message file `file` is no translation of `original`: what is no word of a language
// must be the same, and texts must begin and end alike and name the same answers. Returns false
// where one cannot be read.
bool check_translation(const std::string& file, const std::string& original,
                       finding_list& findings);

}  // namespace morvane

#endif  // MORVANE_LINT_TRANSLATION_CHECKS_H
