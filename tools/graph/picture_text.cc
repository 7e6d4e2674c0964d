#include "graph/picture_text.h"

#include <array>
#include <cmath>
#include <string_view>
#include <vector>

#include "report/finding.h"
#include "report/json.h"

namespace morvane {

namespace {

// How a kind of node or line looks. The colours, here and below, are those that people who do not
// tell red from green can tell apart, the fillings pale shades of them.
struct style_of_kind {
  std::string_view name;  // in JSON, and before the number of a node
  std::string_view meaning;
  std::string_view attributes;
};

constexpr std::array<style_of_kind, 5> NODE_STYLES = {{
    {"product", "product", R"(shape=box, color="#0072B2", fillcolor="#E3F0F8")"},
    {"patch", "patch", R"(shape=box, peripheries=2, color="#007A5A", fillcolor="#DDF3EC")"},
    {"choice", "one of", R"(shape=ellipse, color="#A87000", fillcolor="#FDF3DA")"},
    {"host", "only on the host",
     R"(shape=octagon, margin="0.06,0.05", style="filled,dashed", color="#56B4E9", )"
     R"(fillcolor="#FFFFFF")"},
    {"unmet", "unmet",
     R"(shape=octagon, margin="0.06,0.05", penwidth=2, color="#D55E00", fillcolor="#F7CDB0")"},
}};

const style_of_kind& style_of(const picture_node& node) {
  return NODE_STYLES[static_cast<std::size_t>(node.kind)];
}

constexpr style_of_kind NEEDS = {"needs", "needs", R"(color="#000000")"};
constexpr style_of_kind PATCH_OF = {"patch_of", "patch of",
                                    R"(style=dotted, penwidth=2, color="#007A5A")"};
constexpr style_of_kind RING = {"ring", "ring", R"(style=bold, penwidth=4, color="#D55E00")"};

// Of both kinds: dotted as the one, thick as the other.
constexpr std::string_view PATCH_IN_RING = R"(style=dotted, penwidth=4, color="#D55E00")";

std::string_view attributes_of(const picture_edge& edge) {
  if (edge.kind == edge_kind::PATCH_OF) return edge.in_ring ? PATCH_IN_RING : PATCH_OF.attributes;
  return edge.in_ring ? RING.attributes : NEEDS.attributes;
}

// Wherever the picture is shown, some font will do: the margins leave room for a wider one. What is
// not connected is packed, which keeps a large picture narrow; lines cannot have texts then.
constexpr std::string_view HEAD = R"(digraph needs {
  graph [rankdir=TB, pack=16, packmode=clust, ranksep=0.5, nodesep=0.14, bgcolor="#FFFFFF",
         fontname="sans-serif", tooltip=" "];
  node [fontname="sans-serif", fontsize=14, margin="0.14,0.06", style=filled];
  edge [fontname="sans-serif", fontsize=14, arrowsize=0.8];
)";

// Returns printable ASCII without what dot takes for a reference to a character.
std::string plain(std::string_view text) {
  std::string shown;
  for (const char c : printable(text)) {
    if (c == '&') {
      shown += "&amp;";
    } else {
      shown += c;
    }
  }
  return shown;
}

// Returns `lines` between double quotes, in the middle below each other.
std::string dot_string(const std::vector<std::string>& lines) {
  std::string text = "\"";
  for (const std::string& line : lines) {
    if (&line != &lines.front()) text += "\\n";
    for (const char c : plain(line)) {
      if (c == '"' || c == '\\') text += '\\';
      text += c;
    }
  }
  return text + "\"";
}

// Returns `text` as it stands in a table.
std::string marked_up(std::string_view text) {
  std::string shown;
  for (const char c : plain(text)) {
    switch (c) {
      case '<':
        shown += "&lt;";
        break;
      case '>':
        shown += "&gt;";
        break;
      case '"':
        shown += "&quot;";
        break;
      case '\\':
        shown += "\\\\";
        break;
      default:
        shown += c;
    }
  }
  return shown;
}

std::string node_name(const picture& drawn, std::size_t number) {
  return std::string(style_of(drawn.nodes[number]).name) + std::to_string(number + 1);
}

std::vector<bool> related(const picture& drawn) {
  std::vector<bool> is_related(drawn.nodes.size(), false);
  for (const picture_edge& edge : drawn.edges) {
    is_related[edge.from] = true;
    is_related[edge.to] = true;
  }
  return is_related;
}

std::string shown_why(const picture_need& why) {
  std::string shown;
  if (!why.part.empty()) shown = "part '" + why.part + "' needs ";
  shown += why.needs;
  if (why.optional) shown += ", if it is wanted";
  if (why.elsewhere) shown += ", on this host or another one";
  return shown;
}

std::string edge_line(const picture& drawn, const picture_edge& edge) {
  std::vector<std::string> whys;
  for (const picture_need& why : edge.needs) whys.push_back(shown_why(why));
  std::string line = "  " + node_name(drawn, edge.from) + " -> " + node_name(drawn, edge.to) +
                     " [" + std::string(attributes_of(edge));
  if (!whys.empty()) line += ", edgetooltip=" + dot_string(whys);
  return line + "];\n";
}

// Returns a table of the products without any relation, about twice as high as wide.
std::string unrelated_table(const picture& drawn, const std::vector<bool>& is_related) {
  std::vector<std::string> cells;
  for (std::size_t i = 0; i < drawn.nodes.size(); ++i) {
    if (is_related[i]) continue;
    std::string cell;
    for (const std::string& line : drawn.nodes[i].lines) {
      cell += (cell.empty() ? "" : " ") + marked_up(line);
    }
    cells.push_back(std::move(cell));
  }
  if (cells.empty()) return "";
  const auto columns = static_cast<std::size_t>(
      std::max(1.0, std::round(std::sqrt(static_cast<double>(cells.size()) / 4))));
  std::string table =
      "  unrelated [shape=plain, style=\"\", tooltip=\"no relations\", label=<\n"
      "    <TABLE BORDER=\"0\" CELLBORDER=\"1\" CELLSPACING=\"0\" CELLPADDING=\"8\" "
      "COLOR=\"#0072B2\">\n";
  table += "      <TR><TD COLSPAN=\"" + std::to_string(columns) +
           "\" BGCOLOR=\"#E3F0F8\"><B>without relations</B></TD></TR>\n";
  for (std::size_t i = 0; i < cells.size(); i += columns) {
    table += "      <TR>";
    for (std::size_t column = i; column < i + columns; ++column) {
      table += "<TD>" + (column < cells.size() ? cells[column] : " ") + "</TD>";
    }
    table += "</TR>\n";
  }
  return table + "    </TABLE>>];\n";
}

// Returns what the shapes and lines mean: a column of nodes, and below it a line of each kind.
std::string legend(std::size_t hidden) {
  std::string text = "  subgraph cluster_legend {\n    label=\"legend\";\n";
  text += "    color=\"#808080\";\n    tooltip=\" \";\n";
  std::string above;
  for (const style_of_kind& style : NODE_STYLES) {
    const std::string name = "legend_" + std::string(style.name);
    text += "    " + name + " [label=\"" + std::string(style.meaning) + "\", " +
            std::string(style.attributes) + ", tooltip=\" \"];\n";
    if (!above.empty()) text += "    " + above + " -> " + name + " [style=invis];\n";
    above = name;
  }
  text += "    node [shape=plaintext, style=\"\", tooltip=\" \"];\n    edge [edgetooltip=\" \"];\n";
  for (const style_of_kind& style : {NEEDS, PATCH_OF, RING}) {
    const std::string name = "legend_" + std::string(style.name);
    text += "    " + name + "_line [shape=point, label=\"\"];\n";
    text += "    " + name + " [label=\"" + std::string(style.meaning) + "\"];\n";
    text += "    " + above + " -> " + name + "_line [style=invis];\n";
    text += "    " + name + "_line -> " + name + " [" + std::string(style.attributes) + "];\n";
  }
  if (hidden > 0) {
    text += "    legend_hidden [label=\"not drawn: " + std::to_string(hidden) +
            (hidden == 1 ? " need that follows" : " needs that follow") + "\\nfrom others\"];\n";
    text += "    legend_patch_of -> legend_hidden [style=invis];\n";
  }
  return text + "  }\n";
}

}  // namespace

std::string dot_text(const picture& drawn) {
  std::string text(HEAD);
  const std::vector<bool> is_related = related(drawn);
  for (std::size_t i = 0; i < drawn.nodes.size(); ++i) {
    const picture_node& node = drawn.nodes[i];
    if (!is_related[i]) continue;
    text += "  " + node_name(drawn, i) + " [label=" + dot_string(node.lines) + ", " +
            std::string(style_of(node).attributes) +
            ", tooltip=" + dot_string({node.details.empty() ? node.lines.front() : node.details}) +
            "];\n";
  }
  for (const picture_edge& edge : drawn.edges) text += edge_line(drawn, edge);
  return text + unrelated_table(drawn, is_related) + legend(drawn.hidden) + "}\n";
}

std::string json_text(const picture& drawn) {
  json_writer json;
  json.begin_object();
  json.key("nodes");
  json.begin_array();
  for (std::size_t i = 0; i < drawn.nodes.size(); ++i) {
    const picture_node& node = drawn.nodes[i];
    json.begin_object();
    json.member("id", node_name(drawn, i));
    json.member("kind", style_of(node).name);
    if (!node.product.empty()) json.member("product", node.product);
    if (!node.prospect.empty()) json.member("prospect", node.prospect);
    if (!node.path.empty()) json.member("path", node.path);
    json.key("lines");
    json.begin_array();
    for (const std::string& line : node.lines) json.value(line);
    json.end_array();
    json.member("details", node.details);
    json.end_object();
  }
  json.end_array();
  json.key("edges");
  json.begin_array();
  for (const picture_edge& edge : drawn.edges) {
    json.begin_object();
    json.member("from", node_name(drawn, edge.from));
    json.member("to", node_name(drawn, edge.to));
    json.member("kind", edge.kind == edge_kind::NEED ? "need" : "patch-of");
    json.flag("ring", edge.in_ring);
    json.key("needs");
    json.begin_array();
    for (const picture_need& why : edge.needs) {
      json.begin_object();
      if (!why.part.empty()) json.member("part", why.part);
      json.member("needs", why.needs);
      json.flag("optional", why.optional);
      json.flag("elsewhere", why.elsewhere);
      json.end_object();
    }
    json.end_array();
    json.end_object();
  }
  json.end_array();
  json.member("hidden", drawn.hidden);
  json.end_object();
  return json.text();
}

}  // namespace morvane
