// Who needs whom, as nodes and edges.
#ifndef MORVANE_GRAPH_PICTURE_H
#define MORVANE_GRAPH_PICTURE_H

#include <cstddef>
#include <string>
#include <vector>

#include "needs/supply.h"

namespace morvane {

enum class node_kind {
  PRODUCT,
  PATCH,   // a product that builds on another level of itself
  CHOICE,  // products of which one will do
  HOST,    // what no product of the distribution is, and the host may have
  UNMET,   // what products of the distribution should be, and are not
};

struct picture_node {
  node_kind kind = node_kind::PRODUCT;
  std::vector<std::string> lines;
  std::string details;   // in a line
  std::string product;   // its identifier
  std::string prospect;  // of a product of a distribution
  std::string path;      // of a product or supplier of a run
};

// Why there is an edge.
struct picture_need {
  std::string part;  // empty for a patch
  std::string needs;
  bool optional = false;   // the part asks whether it is wanted
  bool elsewhere = false;  // the supplier may be on another host

  bool operator==(const picture_need&) const = default;
};

enum class edge_kind { NEED, PATCH_OF };

struct picture_edge {
  std::size_t from = 0;
  std::size_t to = 0;
  edge_kind kind = edge_kind::NEED;
  bool in_ring = false;
  std::vector<picture_need> needs;  // none of an edge that leaves a choice
};

struct picture {
  std::vector<picture_node> nodes;
  std::vector<picture_edge> edges;
  std::size_t hidden = 0;  // edges that `reduce` took away
};

// Returns the number of the node in `drawn` that stands for such a thing; adds it where there is
// none yet.
std::size_t node_for(picture& drawn, picture_node node);

// Returns the edge in `drawn` between two nodes; adds it where there is none yet.
picture_edge& edge_for(picture& drawn, std::size_t from, std::size_t to, edge_kind kind);

// Returns who needs whom in a distribution.
picture picture_of(const distribution_needs& needs);

// Which relations of a product are of interest.
enum class direction { BOTH, NEEDS, NEEDED_BY };

// Leaves of `drawn` only the product and what it is related with, over other products, too. Returns
// false where there is no such product.
bool keep_related(picture& drawn, const std::string& identifier, direction wanted);

// Hides the needs between products that follow from others: where what is needed is also needed by
// something else that is needed. Rings and patches stay.
void reduce(picture& drawn);

}  // namespace morvane

#endif  // MORVANE_GRAPH_PICTURE_H
