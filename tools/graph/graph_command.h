// The command morvane-graph.
#ifndef MORVANE_GRAPH_GRAPH_COMMAND_H
#define MORVANE_GRAPH_GRAPH_COMMAND_H

#include "command/exit_status.h"

namespace morvane {

// Does what the command line tells; returns how the command ends.
exit_status run_graph(int count, char** arguments);

}  // namespace morvane

#endif  // MORVANE_GRAPH_GRAPH_COMMAND_H
