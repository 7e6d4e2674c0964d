#include "needs/prospects.h"

#include <algorithm>
#include <deque>
#include <optional>

namespace morvane {

namespace {

using product_set = std::vector<bool>;

// Tells whether products of `available` can meet all that counts of what a product needs.
bool can_do_with(const product_needs& product, const product_set& available,
                 const need_filter& counts) {
  return std::ranges::all_of(product.needs, [&](const supplied_need& need) {
    if (is_elsewhere(need) || !counts(need)) return true;
    return std::ranges::any_of(need.candidates, [&](const candidate& each) {
      return is_usable(each) && available[each.product];
    });
  });
}

// Adds the products that can do with those in the set, or takes away those that cannot, until
// nothing changes: from nothing that is what can be installed one after the other, from everything
// what can be installed at all.
product_set settled(product_set set, bool adding, const distribution_needs& needs,
                    const need_filter& counts) {
  for (bool changed = true; changed;) {
    changed = false;
    for (std::size_t i = 0; i < needs.size(); ++i) {
      if (set[i] == adding || can_do_with(needs[i], set, counts) != adding) continue;
      set[i] = adding;
      changed = true;
    }
  }
  return set;
}

using edge_filter = std::function<bool(const supplied_need& need, const candidate& supplier)>;

// Returns a shortest ring through product `start`, over the needs and suppliers that `edges` takes;
// nothing where there is none.
std::optional<std::vector<ring_step>> ring_through(std::size_t start,
                                                   const distribution_needs& needs,
                                                   const edge_filter& edges) {
  struct arrival {
    ring_step from;
    bool arrived = false;
  };
  std::vector<arrival> arrivals(needs.size());
  std::deque<std::size_t> waiting = {start};
  while (!waiting.empty()) {
    const std::size_t here = waiting.front();
    waiting.pop_front();
    for (const supplied_need& need : needs[here].needs) {
      for (const candidate& supplier : need.candidates) {
        arrival& there = arrivals[supplier.product];
        if (there.arrived || !is_usable(supplier) || is_elsewhere(need)) continue;
        if (!edges(need, supplier)) continue;
        there = {{here, &need}, true};
        waiting.push_back(supplier.product);
      }
    }
  }
  if (!arrivals[start].arrived) return std::nullopt;
  std::vector<ring_step> steps;
  std::size_t here = start;
  do {
    steps.push_back(arrivals[here].from);
    here = steps.back().product;
  } while (here != start);
  std::ranges::reverse(steps);
  return steps;
}

bool have_same_products(const ring& a, const ring& b) {
  return std::ranges::equal(a.steps, b.steps, {}, &ring_step::product, &ring_step::product);
}

// Adds a ring through each product that is in one and in none so far.
void add_rings(const distribution_needs& needs, bool avoidable, const edge_filter& edges,
               product_set& covered, std::vector<ring>& rings) {
  for (std::size_t start = 0; start < needs.size(); ++start) {
    if (covered[start]) continue;
    auto steps = ring_through(start, needs, edges);
    if (!steps) continue;
    const auto first = std::ranges::min_element(*steps, {}, &ring_step::product);
    std::rotate(steps->begin(), first, steps->end());
    for (const ring_step& step : *steps) covered[step.product] = true;
    ring found = {std::move(*steps), avoidable};
    const bool known = std::ranges::any_of(
        rings, [&](const ring& each) { return have_same_products(each, found); });
    if (!known) rings.push_back(std::move(found));
  }
}

}  // namespace

std::vector<prospect> prospects(const distribution_needs& needs, const need_filter& counts) {
  const product_set in_order = settled(product_set(needs.size(), false), true, needs, counts);
  const product_set at_all = settled(product_set(needs.size(), true), false, needs, counts);
  std::vector<prospect> found;
  for (std::size_t i = 0; i < needs.size(); ++i) {
    found.push_back(in_order[i] ? prospect::INSTALLABLE
                                : (at_all[i] ? prospect::IN_RING : prospect::NEVER));
  }
  return found;
}

std::vector<ring> rings_in(const distribution_needs& needs) {
  // What nothing meets is no part of a ring.
  const std::vector<prospect> found = prospects(needs, is_met);
  const auto is_stuck = [&](const candidate& supplier) {
    return found[supplier.product] == prospect::IN_RING;
  };
  const auto leaves_no_choice = [&](const supplied_need& need, const candidate&) {
    return std::ranges::all_of(
        need.candidates, [&](const candidate& each) { return !is_usable(each) || is_stuck(each); });
  };
  std::vector<ring> rings;
  product_set covered(needs.size(), false);
  add_rings(needs, false, leaves_no_choice, covered, rings);
  add_rings(
      needs, true, [](const supplied_need&, const candidate&) { return true; }, covered, rings);
  return rings;
}

}  // namespace morvane
