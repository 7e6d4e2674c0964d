// Running make for one product.
#ifndef MORVANE_INSTALL_MAKE_RUN_H
#define MORVANE_INSTALL_MAKE_RUN_H

#include <signal.h>

#include <string>

#include "platform/file.h"

namespace morvane {

// Runs make on the installation makefile for the product `id`, one job at a time, all that it
// writes going to `output`; nobody answers what it asks. make holds the signals of
// `mask` back; TERM, which the caller holds back, ends it. Returns whether it succeeded.
bool run_make(const std::string& id, const descriptor& output, const sigset_t& mask);

}  // namespace morvane

#endif  // MORVANE_INSTALL_MAKE_RUN_H
