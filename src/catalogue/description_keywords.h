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
// types belong: the last one of each, of as many as were opened, which may be more than are kept.
struct description {
  product& record;
  std::string_view identifier;
  std::size_t targets = 0;
  std::size_t categories = 0;  // of the last target
  std::size_t types = 0;       // of the last category dependency
  bool fixed_lists_disabled = false;
  std::size_t to_come = 0;  // bytes of the file behind the entry

  target_dep* target() const { return last(record.target_dep, targets); }
  category_dep* category() const {
    return target() == nullptr ? nullptr : last(target()->category_dep, categories);
  }
  type_dep* type() const {
    return category() == nullptr ? nullptr : last(category()->type_dep, types);
  }

 private:
  template <typename Slots>
  static typename Slots::value_type::pointer last(const Slots& slots, std::size_t count) {
    return count >= 1 && count <= slots.size() ? slots[count - 1].get() : nullptr;
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

// Appends `added` to `text` as a further line; to an absent text as its first. `to_come` is about
// how many bytes may still be appended.
void append_text(long_text& text, std::string_view added, std::size_t to_come = 0);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_DESCRIPTION_KEYWORDS_H
