// A picture as text: for dot, which draws it, and as JSON.
#ifndef MORVANE_GRAPH_PICTURE_TEXT_H
#define MORVANE_GRAPH_PICTURE_TEXT_H

#include <string>

#include "graph/picture.h"

namespace morvane {

// Returns the picture in the language of dot, in printable ASCII. Each meaning has a shape or kind
// of line and a colour of its own, which a legend explains.
std::string dot_text(const picture& drawn);

// Returns an object with the members "nodes", "edges" and "hidden", the number of edges left out.
std::string json_text(const picture& drawn);

}  // namespace morvane

#endif  // MORVANE_GRAPH_PICTURE_TEXT_H
