// Verifications as people, scripts and programs read them.
#ifndef MORVANE_VERIFY_VERIFY_REPORT_H
#define MORVANE_VERIFY_VERIFY_REPORT_H

#include <string>
#include <vector>

#include "verify/verification.h"

namespace morvane {

// Returns a line for each product, and one for each path that differs below it.
std::string text_of(const std::vector<verification>& verified);

// Returns a line for each path that differs, in the form in which package managers show it: a
// letter for each property that differs, and the path.
std::string rpm_text_of(const std::vector<verification>& verified);

// Returns an object whose member "products" is an array of objects.
std::string json_of(const std::vector<verification>& verified);

}  // namespace morvane

#endif  // MORVANE_VERIFY_VERIFY_REPORT_H
