// The keywords of the descriptions: what each needs to be open, and how its value is stored.
#ifndef MORVANE_CATALOGUE_DESCRIPTION_KEYWORDS_H
#define MORVANE_CATALOGUE_DESCRIPTION_KEYWORDS_H

#include <array>
#include <cstddef>
#include <string_view>

#include "catalogue/product.h"
#include "messages/numbers.h"

namespace morvane {

// What must be open, or have room, for an entry to be accepted.
enum class scope {
  PRODUCT,
  FIXED_LIST,  // not disabled by an explicit description state
  NEW_TARGET,  // room for another target
  TARGET,
  CATEGORY,
  NEW_TYPE,  // a category dependency with room for another type
  TYPE,
};

// The record being filled and the place in it where entries of targets, category dependencies and
// types belong: the running indices are -1 while nothing is open and may be beyond the last.
struct description {
  product& record;
  std::string_view identifier;
  int target_index = -1;
  int category_index = -1;
  int type_index = -1;
  bool fixed_lists_disabled = false;

  target_dep* target() const { return at(record.target_dep, target_index); }
  category_dep* category() const {
    return target() == nullptr ? nullptr : at(target()->category_dep, category_index);
  }
  type_dep* type() const {
    return category() == nullptr ? nullptr : at(category()->type_dep, type_index);
  }

 private:
  template <typename Slots>
  static typename Slots::value_type::pointer at(const Slots& slots, int index) {
    const bool in_range = index >= 0 && index < static_cast<int>(slots.size());
    return in_range ? slots[static_cast<std::size_t>(index)].get() : nullptr;
  }
};

struct keyword {
  message_number number;  // of its text
  scope needs;
  void (*store)(description& d, std::string_view value);
};

inline constexpr std::size_t KEYWORD_COUNT = 34;

// The keywords in the order in which they are tried: where two texts are equal, the first counts.
extern const std::array<keyword, KEYWORD_COUNT> KEYWORDS;

// Appends `added` to `text` as a further line; to an absent text as its first.
void append_text(long_text& text, std::string_view added);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_DESCRIPTION_KEYWORDS_H
