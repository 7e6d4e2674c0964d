// The description parser: the input is a description. The keywords are those of the unit tests.
#include <algorithm>

#include "catalogue/description_parser.h"
#include "console/product_dump.h"
#include "support/messages.h"
#include "target.h"

namespace {

using namespace morvane;

// Tells whether the slots that are set come first.
template <typename Slots>
bool is_contiguous(const Slots& slots) {
  const auto end = std::find(slots.begin(), slots.end(), nullptr);
  return std::all_of(end, slots.end(), [](const auto& slot) { return slot == nullptr; });
}

void check(const category_dep& category) {
  require(!category.category.empty(), "a category dependency has a category");
  require(category.product == nullptr, "nothing is settled");
  require(is_contiguous(category.type_dep), "types have no gap");
  require(category.type_dep[0] == nullptr ? !category.type_num : category.type_num == 0U,
          "the first type is the chosen one");
  for (const auto& type : category.type_dep) {
    if (type == nullptr) continue;
    require(!type->type.empty(), "a type has a name");
    require(!type->file_dep.back(), "the list of files has an end mark");
  }
}

void check(const product& record) {
  require(record.install == product_state::INITIALISED, "the record is initialised");
  require(record.id == "fuzz", "the record has its identifier");
  require(record.descr_avail != NO_DESCRIPTION, "the description was there");
  require(record.needed_patches.back() == needed_patch(), "the list of patches has an end mark");
  require(record.settled.path == path_state::UNSETTLED && !record.settled.owner &&
              !record.settled.group && !record.settled.access,
          "no setting is settled");
  require(is_contiguous(record.target_dep), "targets have no gap");
  for (const auto& target : record.target_dep) {
    if (target == nullptr) continue;
    require(!target->target.empty(), "a target has a name");
    require(target->install == target_state::NOT_WANTED, "no target is decided");
    require(is_contiguous(target->category_dep), "category dependencies have no gap");
    for (const auto& category : target->category_dep) {
      if (category != nullptr) check(*category);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool ready = [] {
    use_test_messages();
    use_scratch_directory();
    return true;
  }();
  require(ready, "messages and directory are there");
  write_file("fuzz.descr", as_text(data, size));
  static product record;
  read_product(".", "fuzz", record);
  check(record);
  print_product(record);

  // What the record held before plays no part.
  product fresh;
  read_product(".", "fuzz", fresh);
  require(fresh.name == record.name && fresh.abstract == record.abstract &&
              fresh.needed_patches == record.needed_patches &&
              fresh.descr_avail == record.descr_avail && fresh.fix_owner == record.fix_owner,
          "a description is read the same way twice");
  return 0;
}
