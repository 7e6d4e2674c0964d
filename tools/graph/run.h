// What was chosen in a run, from the settings files that it wrote.
#ifndef MORVANE_GRAPH_RUN_H
#define MORVANE_GRAPH_RUN_H

#include <string>

#include "distribution/distribution.h"
#include "graph/picture.h"

namespace morvane {

// Returns who uses whom, by the settings files ID.dat in `directory`, which holds `looked_at`.
// A product without a settings file is not drawn.
picture picture_of_run(const std::string& directory, const distribution& looked_at);

}  // namespace morvane

#endif  // MORVANE_GRAPH_RUN_H
