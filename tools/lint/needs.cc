#include "lint/needs.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "lint/spelling.h"
#include "messages/table.h"
#include "needs/prospects.h"
#include "needs/supply.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

// Returns the place of the last entry of `keyword` that belongs to the type opened at `opening`, or
// `opening`.
place_in_file place_in_type(const read_description& description, const place_in_file& opening,
                            message_number keyword) {
  place_in_file place = opening;
  bool is_open = false;
  for (const located_entry& entry : description.entries) {
    if (entry.place.line == opening.line && entry.place.column == opening.column) {
      is_open = true;
      continue;
    }
    const bool opens = entry.keyword == KEYWORD_TARGET || entry.keyword == KEYWORD_NEEDS_CATEGORY ||
                       entry.keyword == KEYWORD_NEEDS_TYPE;
    if (opens && !entry.value.empty()) is_open = false;
    if (is_open && entry.keyword == keyword) place = entry.place;
  }
  return place;
}

// What asks for something: a part, or the patch itself.
string shown_needer(const supplied_need& need) {
  return need.part == nullptr ? "it" : in_quotes(need.part->target);
}

class needs_checks {
 public:
  needs_checks(const distribution& looked_at, finding_list& findings)
      : needs_(needs_in(looked_at)), findings_(findings) {
    for (const product_needs& each : needs_) {
      const string_view category = each.record().category;
      if (!category.empty()) categories_.push_back(category);
    }
  }

  void check() {
    for (const product_needs& each : needs_) {
      for (const supplied_need& need : each.needs) {
        if (need.category == nullptr) continue;  // a patch level is looked for with its own checks
        if (is_met(need)) {
          check_alternatives(each, need);
        } else {
          add_unmet(each, need);
        }
      }
    }
    for (const ring& each : rings_in(needs_)) add_ring(each);
    check_prospects();
  }

 private:
  const string& file_of(const product_needs& product) const {
    return product.product->description.file;
  }

  string shown_product(const candidate& offered) const {
    return needs_[offered.product].product->identifier;
  }

  // Returns the place of what asks for more than the candidate has: a version or a patch level.
  place_in_file place_of_minimum(const product_needs& product, const supplied_need& need,
                                 const candidate& too_old) const {
    const place_in_file opening = place_of_type(need, too_old.alternative);
    release reached = needs_[too_old.product].record().release;
    reached.patch = too_old.alternative->release.patch;
    const bool lacks_patch = reached >= too_old.alternative->release;
    return place_in_type(product.product->description, opening,
                         lacks_patch ? KEYWORD_NEEDS_PATCH : KEYWORD_NEEDS_VERSION);
  }

  static place_in_file place_of_type(const supplied_need& need, const type_dep* alternative) {
    const type_alternatives types = alternatives(*need.category);
    for (std::size_t i = 0; i < types.size() && i < need.types.size(); ++i) {
      if (types[i].get() == alternative) return need.types[i];
    }
    return need.place;
  }

  // Returns the directory in which the description says that the host has such a product.
  static string usual_directory(const category_dep& category) {
    for (const auto& type : alternatives(category)) {
      if (!type->std_path.empty()) return string(type->std_path);
    }
    return "";
  }

  // Tells whether the category is one of those whose version the program finds out by other ways
  // than a description.
  static bool is_found_on_hosts(string_view category) {
    return category == r[CATEGORY_OF_LINKS_TOOL] || category == r[CATEGORY_WITH_STAND_IN];
  }

  string_view meant_category(const supplied_need& need) const {
    return nearest(need.category->category, categories_);
  }

  // Tells whether an unmet need can be meant to be met by what the host has already.
  bool is_expected_on_host(const supplied_need& need) const {
    if (need.category == nullptr || is_met(need)) return false;
    if (is_elsewhere(need)) return true;
    return need.candidates.empty() && meant_category(need).empty() &&
           (is_found_on_hosts(need.category->category) || !usual_directory(*need.category).empty());
  }

  // Returns the product whose path an unmet need names as that of a host, or null.
  const product_needs* product_at_usual_directory(const supplied_need& need) const {
    if (!is_expected_on_host(need) || is_elsewhere(need)) return nullptr;
    const string directory = usual_directory(*need.category);
    const auto found = std::ranges::find_if(needs_, [&](const product_needs& each) {
      return !directory.empty() && each.record().path == directory;
    });
    return found == needs_.end() ? nullptr : &*found;
  }

  void add_unmet(const product_needs& product, const supplied_need& need) {
    const string needs = in_quotes(need.part->target) + " needs " + shown_need(need);
    const candidate* nearest = nearest_candidate(needs_, need);
    if (const product_needs* there = product_at_usual_directory(need); there != nullptr) {
      findings_.add("need-path", file_of(product), need.place,
                    needs + ", with NeedsPath where " + in_quotes(there->product->identifier) +
                        " goes, which is of category " + in_quotes(there->record().category) +
                        ": correct one of the categories, or NeedsPath");
    } else if (is_expected_on_host(need)) {
      const string directory = usual_directory(*need.category);
      findings_.add("need-on-host", file_of(product), need.place,
                    needs + ", which no product here meets: it is expected " +
                        (is_elsewhere(need) ? "on this host or another one" : "on the host") +
                        (directory.empty() ? "" : ", such as in " + directory));
    } else if (nearest == nullptr) {
      const string_view meant = meant_category(need);
      findings_.add(
          "need-unmet", file_of(product), need.place,
          needs + ", and no product here has that category" +
              (meant.empty() ? string(": add one, or say with NeedsPath where hosts have it")
                             : ": did you mean " + in_quotes(meant) + "?"));
    } else if (nearest->fit == fit::TOO_OLD) {
      findings_.add("need-too-old", file_of(product), place_of_minimum(product, need, *nearest),
                    needs + "; nearest is " + shown_product(*nearest) + " " +
                        version_numbers(needs_[nearest->product].record().release));
    } else {
      const type_alternatives types = alternatives(*need.category);
      findings_.add("need-type", file_of(product),
                    types.size() == 1 ? place_of_type(need, types[0].get()) : need.place,
                    needs + "; " + shown_types(need));
    }
  }

  // Returns of which types the products of the needed category are.
  string shown_types(const supplied_need& need) const {
    const candidate& first = need.candidates.front();
    const string_view type = needs_[first.product].record().type;
    return "nearest is " + shown_product(first) +
           (type.empty() ? string(", which has no type") : ", of type " + in_quotes(type));
  }

  // Looks at each type of a need that others meet.
  void check_alternatives(const product_needs& product, const supplied_need& need) {
    for (const auto& type : alternatives(*need.category)) {
      const bool met = std::ranges::any_of(need.candidates, [&](const candidate& each) {
        return is_usable(each) && each.alternative == type.get();
      });
      if (met) continue;
      findings_.add("need-alternative", file_of(product), place_of_type(need, type.get()),
                    "no product here is " + string(need.category->category) + " " +
                        shown_alternative(*type) + ", which " + in_quotes(need.part->target) +
                        " takes as well");
    }
  }

  void add_ring(const ring& found) {
    string path;
    for (const ring_step& step : found.steps) {
      path += needs_[step.product].product->identifier + " -> ";
    }
    path += needs_[found.steps.front().product].product->identifier;
    for (std::size_t i = 0; i < found.steps.size(); ++i) {
      const ring_step& step = found.steps[i];
      const product_needs& product = needs_[step.product];
      if (i > 0) {
        const ring_step& next = found.steps[(i + 1) % found.steps.size()];
        const string what = step.need->category == nullptr ? shown_need(*step.need)
                                                           : string(step.need->category->category);
        findings_.add("need-ring-step", file_of(product), step.need->place,
                      (step.need->part == nullptr ? string("the patch")
                                                  : "part " + in_quotes(step.need->part->target)) +
                          " needs " + what + ": " + needs_[next.product].product->identifier);
      } else if (found.avoidable) {
        findings_.add("need-ring-possible", file_of(product), step.need->place,
                      "ring of needs, if the operator chooses so: " + path);
      } else {
        findings_.add("need-ring", file_of(product), step.need->place, "ring of needs: " + path);
      }
    }
  }

  // Looks for products that others drag down: the faults of their own needs are said there.
  void check_prospects() {
    const std::vector<prospect> found = prospects(needs_, [this](const supplied_need& need) {
      return is_required(need) && !is_expected_on_host(need);
    });
    for (std::size_t i = 0; i < needs_.size(); ++i) {
      for (const supplied_need& need : needs_[i].needs) {
        if (!is_required(need) || is_elsewhere(need) || !is_met(need)) continue;
        const bool blocked = std::ranges::all_of(need.candidates, [&](const candidate& each) {
          return !is_usable(each) || found[each.product] == prospect::NEVER;
        });
        if (!blocked) continue;
        const auto supplier = std::ranges::find_if(need.candidates, is_usable);
        findings_.add("never-installable", file_of(needs_[i]), need.place,
                      shown_needer(need) + " needs " + shown_need(need) + ", and " +
                          shown_product(*supplier) + " lacks something itself");
      }
    }
  }

  distribution_needs needs_;
  std::vector<string_view> categories_;
  finding_list& findings_;
};

}  // namespace

void check_needs(const distribution& looked_at, finding_list& findings) {
  needs_checks(looked_at, findings).check();
}

}  // namespace morvane
