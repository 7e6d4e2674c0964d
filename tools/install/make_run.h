// Running make for one product.
#ifndef MORVANE_INSTALL_MAKE_RUN_H
#define MORVANE_INSTALL_MAKE_RUN_H

#include <string>

#include "platform/file.h"

namespace morvane {

// Runs make on the installation makefile for the product `id`, one job at a time, all that it
// writes going to `output`; nobody answers what it asks. Returns whether it succeeded.
bool run_make(const std::string& id, const descriptor& output);

}  // namespace morvane

#endif  // MORVANE_INSTALL_MAKE_RUN_H
