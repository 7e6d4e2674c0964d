// Drawing a picture with dot, which comes with Graphviz.
#ifndef MORVANE_GRAPH_DRAWING_H
#define MORVANE_GRAPH_DRAWING_H

#include <optional>
#include <string>

namespace morvane {

// What came of drawing: the picture, or why there is none.
struct drawing {
  std::optional<std::string> svg;
  std::string fault;
};

// Returns `dot_text` drawn as SVG. Waits for dot at most 30 seconds.
drawing draw_as_svg(const std::string& dot_text);

}  // namespace morvane

#endif  // MORVANE_GRAPH_DRAWING_H
