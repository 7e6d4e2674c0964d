#include "needs/supply.h"

#include <algorithm>
#include <optional>

#include "depend/needs.h"
#include "depend/patch_match.h"
#include "depend/requirement.h"

namespace morvane {

namespace {

bool is_offered(const distributed_product& product) {
  return (product.archive || product.has_source_tree) &&
         product.description.outcome != read_outcome::IMPOSSIBLE;
}

// The version of a product that is installed in the same run is the one that it says.
release release_of(const product* record, std::string_view, std::string_view,
                   std::optional<std::string_view>) {
  return record->release;
}

// Returns the alternative that the operator has to choose for a supplier of this type; of several
// the first is the one that is taken.
const type_dep* alternative_for(const category_dep& category, const product& supplier) {
  for (const auto& type : alternatives(category)) {
    if (type->type == supplier.type) return type.get();
  }
  return nullptr;
}

fit compare(const product& supplier, const category_dep& category, const type_dep* alternative) {
  if (alternative == nullptr && !alternatives(category).empty()) return fit::OTHER_TYPE;
  const requirement wanted = requirement_of(category.category, alternative);
  const version_check found =
      check_version(&supplier, wanted.category, wanted.type, wanted.minimum, release_of);
  return found == version_check::SATISFIED ? fit::FITS : fit::TOO_OLD;
}

// Which places the description has for the slots that `part` and `category` are in.
const located_category* located(const read_description& description, const need& dependency) {
  const auto& slots = description.record.target_dep;
  for (std::size_t i = 0; i < slots.size() && i < description.parts.size(); ++i) {
    if (slots[i].get() != dependency.target) continue;
    const auto& categories = slots[i]->category_dep;
    for (std::size_t j = 0; j < categories.size(); ++j) {
      if (categories[j].get() == dependency.category) return &description.parts[i].categories[j];
    }
  }
  return nullptr;
}

place_in_file place_of_levels(const read_description& description) {
  place_in_file place;
  for (const located_entry& entry : description.entries) {
    if (entry.keyword == KEYWORD_REQUIRED_PATCHES) place = entry.place;
  }
  return place;
}

class supply {
 public:
  explicit supply(const distribution& looked_at) {
    for (const distributed_product& product : looked_at.products) {
      if (is_offered(product) && needs_.size() < TABLE_SIZE) needs_.push_back({&product, {}});
    }
    for (product_needs& each : needs_) find_needs(each);
  }

  distribution_needs needs() && { return std::move(needs_); }

 private:
  void find_needs(product_needs& of) {
    const read_description& description = of.product->description;
    for (const need& dependency : needs_of(description.record)) {
      supplied_need found;
      found.part = dependency.target;
      found.category = dependency.category;
      if (dependency.category != nullptr) {
        if (const located_category* category = located(description, dependency)) {
          found.place = category->place;
          found.types = category->types;
        }
        find_suppliers(found);
      } else {
        found.level = dependency.patch->level;
        found.place = place_of_levels(description);
        find_levels(description.record, found);
      }
      of.needs.push_back(std::move(found));
    }
  }

  void find_suppliers(supplied_need& found) {
    for (std::size_t i = 0; i < needs_.size(); ++i) {
      const product& supplier = needs_[i].record();
      if (supplier.category != found.category->category) continue;
      const type_dep* alternative = alternative_for(*found.category, supplier);
      found.candidates.push_back({i, alternative, compare(supplier, *found.category, alternative)});
    }
  }

  void find_levels(const product& record, supplied_need& found) {
    for (std::size_t i = 0; i < needs_.size(); ++i) {
      const auto match = match_patch(record, needs_[i].record(), found.level);
      if (!match) continue;
      found.candidates.push_back(
          {i, nullptr, is_taken_silently(*match) ? fit::FITS : fit::IF_ACCEPTED});
    }
  }

  distribution_needs needs_;
};

}  // namespace

distribution_needs needs_in(const distribution& looked_at) {
  return supply(looked_at).needs();
}

bool is_usable(const candidate& offered) {
  return offered.fit == fit::FITS || offered.fit == fit::IF_ACCEPTED;
}

bool is_met(const supplied_need& need) {
  return std::ranges::any_of(need.candidates, is_usable);
}

bool is_elsewhere(const supplied_need& need) {
  return need.part != nullptr && need.part->need_no_install != 0;
}

bool is_required(const supplied_need& need) {
  return need.part == nullptr || !need.part->ask;
}

const candidate* nearest_candidate(const distribution_needs& needs, const supplied_need& need) {
  const candidate* nearest = nullptr;
  for (const candidate& each : need.candidates) {
    if (is_usable(each)) continue;
    const bool nearer = nearest == nullptr || each.fit < nearest->fit ||
                        (each.fit == nearest->fit && needs[each.product].record().release >
                                                         needs[nearest->product].record().release);
    if (nearer) nearest = &each;
  }
  return nearest;
}

std::string shown_need(const supplied_need& need) {
  if (need.category == nullptr) return "patch level " + std::to_string(need.level);
  std::string shown(need.category->category);
  const char* separator = " ";
  for (const auto& alternative : alternatives(*need.category)) {
    shown += separator + shown_alternative(*alternative);
    separator = " or ";
  }
  return shown;
}

std::string shown_alternative(const type_dep& alternative) {
  std::string shown(alternative.type);
  if (alternative.release != release()) shown += " " + version_numbers(alternative.release);
  return shown;
}

}  // namespace morvane
