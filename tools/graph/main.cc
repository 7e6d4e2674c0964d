// morvane-graph: draws which products of a distribution need which.
#include "graph/graph_command.h"

int main(int count, char** arguments) {
  return static_cast<int>(morvane::run_graph(count, arguments));
}
