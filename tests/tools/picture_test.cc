#include "graph/picture.h"

#include <gtest/gtest.h>

#include "graph/picture_text.h"

namespace morvane {
namespace {

picture_node product(const std::string& identifier, std::vector<std::string> lines = {}) {
  picture_node node;
  lines.insert(lines.begin(), identifier);
  node.lines = std::move(lines);
  node.product = identifier;
  return node;
}

picture_node other(node_kind kind, const std::string& line) {
  picture_node node;
  node.kind = kind;
  node.lines = {line};
  return node;
}

// Products a, b, ... and what they need.
picture with_needs(std::size_t products,
                   const std::vector<std::pair<std::size_t, std::size_t>>& needs) {
  picture drawn;
  for (std::size_t i = 0; i < products; ++i) {
    drawn.nodes.push_back(product(std::string(1, static_cast<char>('a' + i))));
  }
  for (const auto& [from, to] : needs) edge_for(drawn, from, to, edge_kind::NEED);
  return drawn;
}

std::string edges_of(const picture& drawn) {
  std::string shown;
  for (const picture_edge& edge : drawn.edges) {
    shown += drawn.nodes[edge.from].lines[0] + drawn.nodes[edge.to].lines[0] + " ";
  }
  return shown;
}

// Returns the lines of the text up to those that explain the picture, without the head.
std::string drawn_lines(const picture& drawn) {
  const std::string text = dot_text(drawn);
  const std::string head_end = "arrowsize=0.8];\n";
  const std::size_t begin = text.find(head_end) + head_end.size();
  return text.substr(begin, text.find("  subgraph cluster_legend") - begin);
}

TEST(Picture, OfEveryMeaningHasAShapeAndAColour) {
  picture drawn;
  drawn.nodes = {product("a", {"1.0"}), product("b"), other(node_kind::CHOICE, "C"),
                 other(node_kind::HOST, "H"), other(node_kind::UNMET, "U")};
  drawn.nodes[0].details = "Alpha, A";
  drawn.nodes[1].kind = node_kind::PATCH;
  edge_for(drawn, 1, 0, edge_kind::PATCH_OF);
  edge_for(drawn, 0, 2, edge_kind::NEED).needs = {{"t", "C", true, true}, {"u", "C", false, false}};
  edge_for(drawn, 0, 3, edge_kind::NEED).in_ring = true;
  edge_for(drawn, 1, 4, edge_kind::PATCH_OF).in_ring = true;
  EXPECT_EQ(
      drawn_lines(drawn),
      R"(  product1 [label="a\n1.0", shape=box, color="#0072B2", fillcolor="#E3F0F8", tooltip="Alpha, A"];
  patch2 [label="b", shape=box, peripheries=2, color="#007A5A", fillcolor="#DDF3EC", tooltip="b"];
  choice3 [label="C", shape=ellipse, color="#A87000", fillcolor="#FDF3DA", tooltip="C"];
  host4 [label="H", shape=octagon, margin="0.06,0.05", style="filled,dashed", color="#56B4E9", fillcolor="#FFFFFF", tooltip="H"];
  unmet5 [label="U", shape=octagon, margin="0.06,0.05", penwidth=2, color="#D55E00", fillcolor="#F7CDB0", tooltip="U"];
  patch2 -> product1 [style=dotted, penwidth=2, color="#007A5A"];
  product1 -> choice3 [color="#000000", edgetooltip="part 't' needs C, if it is wanted, on this host or another one\npart 'u' needs C"];
  product1 -> host4 [style=bold, penwidth=4, color="#D55E00"];
  patch2 -> unmet5 [style=dotted, penwidth=4, color="#D55E00"];
)");
}

TEST(Picture, OfWhateverBytesIsPrintableAndQuoted) {
  picture drawn = with_needs(2, {{0, 1}});
  drawn.nodes[0].lines = {"\"\\N&<\n\x1b\xc3"};
  EXPECT_NE(drawn_lines(drawn).find(R"(label="\"\\N&amp;<\\n\\033\\303")"), std::string::npos);
  drawn.edges.clear();
  EXPECT_NE(drawn_lines(drawn).find(R"(<TD>&quot;\\N&amp;&lt;\\n\\033\\303</TD>)"),
            std::string::npos);
}

TEST(Picture, HasOneTableForProductsWithoutRelations) {
  picture drawn = with_needs(3, {{0, 0}});
  drawn.nodes[1].lines.emplace_back("1.0");
  EXPECT_EQ(drawn_lines(drawn),
            R"(  product1 [label="a", shape=box, color="#0072B2", fillcolor="#E3F0F8", tooltip="a"];
  product1 -> product1 [color="#000000"];
  unrelated [shape=plain, style="", tooltip="no relations", label=<
    <TABLE BORDER="0" CELLBORDER="1" CELLSPACING="0" CELLPADDING="8" COLOR="#0072B2">
      <TR><TD COLSPAN="1" BGCOLOR="#E3F0F8"><B>without relations</B></TD></TR>
      <TR><TD>b 1.0</TD></TR>
      <TR><TD>c</TD></TR>
    </TABLE>>];
)");
}

TEST(Picture, IsReducedByNeedsThatFollowFromOthers) {
  picture drawn = with_needs(4, {{0, 1}, {0, 2}, {1, 2}, {2, 3}, {0, 3}});
  reduce(drawn);
  EXPECT_EQ(edges_of(drawn), "ab bc cd ");
  EXPECT_EQ(drawn.hidden, 2U);
  EXPECT_NE(dot_text(drawn).find("not drawn: 2 needs that follow\\nfrom others"),
            std::string::npos);
}

TEST(Picture, KeepsRingsPatchesAndWhatAChoiceLeadsToWhenItIsReduced) {
  picture drawn = with_needs(3, {{0, 1}, {1, 2}, {0, 2}});
  drawn.nodes[1].kind = node_kind::CHOICE;
  edge_for(drawn, 0, 0, edge_kind::PATCH_OF);
  const std::string before = edges_of(drawn);
  reduce(drawn);
  EXPECT_EQ(edges_of(drawn), before);
  drawn = with_needs(3, {{0, 1}, {1, 2}, {0, 2}});
  drawn.edges[2].in_ring = true;
  reduce(drawn);
  EXPECT_EQ(edges_of(drawn), "ab bc ac ");
}

TEST(Picture, OfAProductHasWhatItNeedsAndWhatNeedsIt) {
  const std::vector<std::pair<std::size_t, std::size_t>> needs = {{0, 1}, {1, 2}, {3, 2}, {1, 4}};
  for (const auto& [wanted, expected] :
       {std::pair(direction::BOTH, "ab bc be "), std::pair(direction::NEEDS, "bc be "),
        std::pair(direction::NEEDED_BY, "ab ")}) {
    picture drawn = with_needs(5, needs);
    EXPECT_TRUE(keep_related(drawn, "b", wanted));
    EXPECT_EQ(edges_of(drawn), expected);
  }
  picture drawn = with_needs(5, needs);
  EXPECT_FALSE(keep_related(drawn, "f", direction::BOTH));
  EXPECT_FALSE(keep_related(drawn, "", direction::BOTH));
}

}  // namespace
}  // namespace morvane
