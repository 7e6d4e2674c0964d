#include "graph/picture.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "needs/prospects.h"

namespace morvane {

namespace {

std::string_view prospect_name(prospect of) {
  switch (of) {
    case prospect::INSTALLABLE:
      return "installable";
    case prospect::IN_RING:
      return "in-ring";
    case prospect::NEVER:
      break;
  }
  return "never";
}

picture_node product_node(const product_needs& of, prospect found) {
  const product& record = of.record();
  const bool is_patch = std::ranges::any_of(
      of.needs, [](const supplied_need& need) { return need.category == nullptr; });
  picture_node node;
  node.kind = is_patch || record.release.patch > 0 ? node_kind::PATCH : node_kind::PRODUCT;
  node.lines = {of.product->identifier};
  if (record.release != release()) node.lines.push_back(version_numbers(record.release));
  node.details = product_name(record);
  if (!record.category.empty()) {
    node.details += " (" + std::string(record.category);
    if (!record.type.empty()) node.details += ", " + std::string(record.type);
    node.details += ")";
  }
  node.product = of.product->identifier;
  node.prospect = prospect_name(found);
  return node;
}

// Draws a distribution. Its products are the first nodes, in their order.
class drawing_of_needs {
 public:
  explicit drawing_of_needs(const distribution_needs& needs) : needs_(needs) {
    const std::vector<prospect> found = prospects(needs);
    for (std::size_t i = 0; i < needs.size(); ++i) {
      drawn_.nodes.push_back(product_node(needs[i], found[i]));
    }
  }

  picture draw() && {
    for (std::size_t i = 0; i < needs_.size(); ++i) {
      for (const supplied_need& need : needs_[i].needs) draw_need(i, need);
    }
    for (const ring& each : rings_in(needs_)) mark(each);
    return std::move(drawn_);
  }

 private:
  // Returns the products that can meet the need: of those that a patch could build on, the ones
  // that are taken without a question, if there are any.
  static std::vector<std::size_t> suppliers(const supplied_need& need) {
    std::vector<std::size_t> found;
    for (const fit wanted : {fit::FITS, fit::IF_ACCEPTED}) {
      for (const candidate& each : need.candidates) {
        if (each.fit == wanted) found.push_back(each.product);
      }
      if (!found.empty()) break;
    }
    return found;
  }

  void draw_need(std::size_t product, const supplied_need& need) {
    const std::vector<std::size_t> found = suppliers(need);
    const edge_kind kind = need.category == nullptr ? edge_kind::PATCH_OF : edge_kind::NEED;
    std::size_t supplier = 0;
    if (found.empty()) {
      supplier = node_for(drawn_, missing_node(product, need));
    } else if (found.size() == 1) {
      supplier = found.front();
    } else {
      supplier = choice_between(found, need);
    }
    const picture_need why = {need.part == nullptr ? "" : std::string(need.part->target),
                              shown_need(need), !is_required(need), is_elsewhere(need)};
    std::vector<picture_need>& whys = edge_for(drawn_, product, supplier, kind).needs;
    if (std::ranges::find(whys, why) == whys.end()) whys.push_back(why);
  }

  // Returns the node of what no product of the distribution supplies.
  picture_node missing_node(std::size_t product, const supplied_need& need) const {
    const candidate* nearest = nearest_candidate(needs_, need);
    picture_node node;
    if (need.category == nullptr) {
      node.kind = node_kind::UNMET;
      node.lines = {std::string(needs_[product].record().name), shown_need(need)};
    } else if (nearest == nullptr || is_elsewhere(need)) {
      node.kind = node_kind::HOST;
      node.lines = lines_of(need);
    } else {
      const morvane::product& record = needs_[nearest->product].record();
      node.kind = node_kind::UNMET;
      node.lines = lines_of(need);
      const std::string differs =
          nearest->fit == fit::TOO_OLD ? version_numbers(record.release) : std::string(record.type);
      node.lines.push_back("nearest: " + needs_[nearest->product].product->identifier +
                           (differs.empty() ? "" : " " + differs));
    }
    return node;
  }

  // Returns what is needed: the category, and a line for each type.
  static std::vector<std::string> lines_of(const supplied_need& need) {
    std::vector<std::string> lines = {std::string(need.category->category)};
    for (const auto& type : alternatives(*need.category)) {
      lines.push_back((lines.size() > 1 ? "or " : "") + shown_alternative(*type));
    }
    return lines;
  }

  // Products that choose between the same suppliers share the choice.
  std::size_t choice_between(const std::vector<std::size_t>& found, const supplied_need& need) {
    const auto known = std::ranges::find_if(choices_, [&](const choice& each) {
      return each.suppliers == found && each.need == need_name(need);
    });
    if (known != choices_.end()) return known->node;
    picture_node node;
    node.kind = node_kind::CHOICE;
    node.lines = {need_name(need), "one of"};
    drawn_.nodes.push_back(std::move(node));
    choices_.push_back({found, need_name(need), drawn_.nodes.size() - 1});
    for (const std::size_t supplier : found) {
      edge_for(drawn_, choices_.back().node, supplier, edge_kind::NEED);
    }
    return choices_.back().node;
  }

  static std::string need_name(const supplied_need& need) {
    return need.category == nullptr ? shown_need(need) : std::string(need.category->category);
  }

  void mark(const ring& found) {
    for (std::size_t i = 0; i < found.steps.size(); ++i) {
      const ring_step& step = found.steps[i];
      const std::size_t next = found.steps[(i + 1) % found.steps.size()].product;
      const edge_kind kind = step.need->category == nullptr ? edge_kind::PATCH_OF : edge_kind::NEED;
      const std::vector<std::size_t> suppliers_found = suppliers(*step.need);
      if (suppliers_found.size() == 1) {
        edge_for(drawn_, step.product, next, kind).in_ring = true;
      } else {
        const std::size_t chosen = choice_between(suppliers_found, *step.need);
        edge_for(drawn_, step.product, chosen, kind).in_ring = true;
        edge_for(drawn_, chosen, next, edge_kind::NEED).in_ring = true;
      }
    }
  }

  struct choice {
    std::vector<std::size_t> suppliers;
    std::string need;
    std::size_t node = 0;
  };

  const distribution_needs& needs_;
  picture drawn_;
  std::vector<choice> choices_;
};

// Marks in `reached` what can be reached from `start` over `edges`, against them if `backwards`.
void reach(std::size_t start, const std::vector<picture_edge>& edges, bool backwards,
           std::vector<bool>& reached) {
  std::vector<bool> here(reached.size(), false);
  std::vector<std::size_t> waiting = {start};
  here[start] = true;
  while (!waiting.empty()) {
    const std::size_t node = waiting.back();
    waiting.pop_back();
    reached[node] = true;
    for (const picture_edge& edge : edges) {
      const auto [from, to] =
          backwards ? std::pair(edge.to, edge.from) : std::pair(edge.from, edge.to);
      if (from != node || here[to]) continue;
      here[to] = true;
      waiting.push_back(to);
    }
  }
}

bool is_product(const picture_node& node) {
  return node.kind == node_kind::PRODUCT || node.kind == node_kind::PATCH;
}

}  // namespace

std::size_t node_for(picture& drawn, picture_node node) {
  const auto known = std::ranges::find_if(drawn.nodes, [&](const picture_node& each) {
    return each.kind == node.kind && each.lines == node.lines && each.path == node.path &&
           each.product == node.product;
  });
  if (known != drawn.nodes.end()) return static_cast<std::size_t>(known - drawn.nodes.begin());
  drawn.nodes.push_back(std::move(node));
  return drawn.nodes.size() - 1;
}

picture_edge& edge_for(picture& drawn, std::size_t from, std::size_t to, edge_kind kind) {
  const auto known = std::ranges::find_if(drawn.edges, [&](const picture_edge& each) {
    return each.from == from && each.to == to && each.kind == kind;
  });
  if (known != drawn.edges.end()) return *known;
  drawn.edges.push_back({.from = from, .to = to, .kind = kind, .in_ring = false, .needs = {}});
  return drawn.edges.back();
}

picture picture_of(const distribution_needs& needs) {
  return drawing_of_needs(needs).draw();
}

bool keep_related(picture& drawn, const std::string& identifier, direction wanted) {
  const auto named = std::ranges::find(drawn.nodes, identifier, &picture_node::product);
  if (identifier.empty() || named == drawn.nodes.end()) return false;
  const auto start = static_cast<std::size_t>(named - drawn.nodes.begin());
  std::vector<bool> kept(drawn.nodes.size(), false);
  if (wanted != direction::NEEDED_BY) reach(start, drawn.edges, false, kept);
  if (wanted != direction::NEEDS) reach(start, drawn.edges, true, kept);

  picture rest;
  std::vector<std::size_t> numbers(drawn.nodes.size());
  for (std::size_t i = 0; i < drawn.nodes.size(); ++i) {
    if (!kept[i]) continue;
    numbers[i] = rest.nodes.size();
    rest.nodes.push_back(std::move(drawn.nodes[i]));
  }
  for (picture_edge& edge : drawn.edges) {
    if (!kept[edge.from] || !kept[edge.to]) continue;
    edge.from = numbers[edge.from];
    edge.to = numbers[edge.to];
    rest.edges.push_back(std::move(edge));
  }
  drawn = std::move(rest);
  return true;
}

void reduce(picture& drawn) {
  // What a choice leads to is not needed for certain, so that nothing follows from it.
  const auto is_certain = [&](const picture_edge& edge) {
    return is_product(drawn.nodes[edge.from]) && is_product(drawn.nodes[edge.to]);
  };
  for (std::size_t i = 0; i < drawn.edges.size();) {
    const picture_edge edge = drawn.edges[i];
    if (edge.kind != edge_kind::NEED || edge.in_ring || !is_certain(edge)) {
      ++i;
      continue;
    }
    std::vector<picture_edge> others;
    std::ranges::copy_if(drawn.edges, std::back_inserter(others), [&](const picture_edge& each) {
      return is_certain(each) && std::tie(each.from, each.to) != std::tie(edge.from, edge.to);
    });
    std::vector<bool> reached(drawn.nodes.size(), false);
    reach(edge.from, others, false, reached);
    if (reached[edge.to]) {
      drawn.edges.erase(drawn.edges.begin() + static_cast<std::ptrdiff_t>(i));
      ++drawn.hidden;
    } else {
      ++i;
    }
  }
}

}  // namespace morvane
