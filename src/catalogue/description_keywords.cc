#include "catalogue/description_keywords.h"

#include <algorithm>
#include <memory>

#include "text/number.h"
#include "text/white_space.h"
#include "text/words.h"

namespace morvane {

namespace {

using std::string_view;

// From this size on a text that outgrows its room gets enough for the rest of the file, so that it
// is copied but once. Pages of it that are never written to cost nothing.
constexpr std::size_t LARGE_TEXT = 4096;

// Behind a state other than 0 the fixed lists are no keywords: they would put theirs in its place.
void store_description_state(description& d, string_view value) {
  d.record.descr_avail = number_or_zero(value);
  if (d.record.descr_avail == 0) {
    d.record.descr_avail = DESCRIBED;
  } else {
    d.fixed_lists_disabled = true;
  }
}

// Stores a version "1.2.3" into the first three numbers of `stored`; parts that are missing are 0
// and parts beyond the third are ignored.
void store_version(release& stored, string_view value) {
  std::array<int, 3> parts{};
  for (int& part : parts) {
    const std::size_t dot = std::min(value.find('.'), value.size());
    part = number_or_zero(value.substr(0, dot));
    value.remove_prefix(std::min(dot + 1, value.size()));
  }
  stored.version = parts[0];
  stored.subversion = parts[1];
  stored.minorversion = parts[2];
}

// A target beyond the last one that a record holds is still counted, so that the entries that
// belong to it are refused; it is kept nowhere.
void open_target(description& d, string_view value) {
  if (value.empty()) return;
  ++d.targets;
  d.categories = 0;
  d.types = 0;
  if (d.targets > TARGETS) return;
  auto& slot = d.record.target_dep[d.targets - 1];
  slot = std::make_unique<target_dep>();
  slot->target = value;
}

// As with targets, a category dependency beyond the last one is counted, but kept nowhere.
void open_category(description& d, string_view value) {
  if (value.empty()) return;
  ++d.categories;
  d.types = 0;
  if (d.categories > CATEGORIES) return;
  auto& slot = d.target()->category_dep[d.categories - 1];
  slot = std::make_unique<category_dep>();
  slot->category = value;
}

// There is always room (see `scope::NEW_TYPE`): a type too many is reported instead of counted, and
// its entries are taken for the last one. The first type is what Enter alone chooses.
void open_type(description& d, string_view value) {
  if (value.empty()) return;
  ++d.types;
  auto& slot = d.category()->type_dep[d.types - 1];
  slot = std::make_unique<type_dep>();
  slot->type = value;
  d.category()->type_num = 0;
}

// Stores a list of file names; the entry behind the last name becomes the end mark.
void store_files(description& d, string_view value) {
  if (value.empty()) return;
  auto& files = d.type()->file_dep;
  std::size_t count = 0;
  for (const string_view name : split_words(value, WHITE_SPACE)) {
    if (count == files.size() - 1) break;
    files[count++] = name;
  }
  files[count].reset();
}

// Stores a list of patch numbers separated by blanks or tabs, and -1 behind them.
void store_patches(description& d, string_view value) {
  auto& patches = d.record.needed_patches;
  for (std::size_t k = 0;; ++k) {
    const bool last = k == patches.size() - 1;
    patches[k].level = last ? -1 : take_number(value, " \t").value_or(-1);
    if (patches[k].level == -1) return;
  }
}

// Stores a list of user or group names. Only white space behind the last name makes the entry
// behind it an end mark; other entries keep what an earlier list put there.
void store_fixed_names(description& d, std::array<name_text, FIXED_NAMES>& names,
                       string_view value) {
  std::size_t count = 0;
  for (const string_view name : split_words(value, WHITE_SPACE)) {
    if (count == names.size()) break;
    names[count++] = name;
  }
  const bool ends_in_white_space = !value.empty() && is_white_space(value.back());
  if (ends_in_white_space && count < names.size()) names[count] = "";
  d.record.descr_avail = FIXED_LISTS;
}

}  // namespace

const std::array<keyword, KEYWORD_COUNT> KEYWORDS = {{
    {KEYWORD_DESCRIPTION_STATE, scope::PRODUCT, store_description_state},
    {KEYWORD_NAME, scope::PRODUCT, [](description& d, string_view v) { d.record.name = v; }},
    {KEYWORD_FULL_NAME, scope::PRODUCT,
     [](description& d, string_view v) { d.record.full_name = v; }},
    {KEYWORD_VERSION, scope::PRODUCT,
     [](description& d, string_view v) { store_version(d.record.release, v); }},
    {KEYWORD_PATCH, scope::PRODUCT,
     [](description& d, string_view v) { d.record.release.patch = number_or_zero(v); }},
    {KEYWORD_CATEGORY, scope::PRODUCT,
     [](description& d, string_view v) { d.record.category = v; }},
    {KEYWORD_TYPE, scope::PRODUCT, [](description& d, string_view v) { d.record.type = v; }},
    {KEYWORD_ABSTRACT, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.abstract, v, d.to_come); }},
    {KEYWORD_HARDWARE, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.hardware, v, d.to_come); }},
    {KEYWORD_TARGET, scope::NEW_TARGET, open_target},
    {KEYWORD_SUPPLIERS_ELSEWHERE, scope::TARGET,
     [](description& d, string_view v) { d.target()->need_no_install = number_or_zero(v); }},
    {KEYWORD_ASK, scope::TARGET,
     [](description& d, string_view v) { append_text(d.target()->ask, v); }},
    {KEYWORD_ASK_AGAIN, scope::TARGET,
     [](description& d, string_view v) { append_text(d.target()->re_ask, v); }},
    {KEYWORD_TARGET_OWNER, scope::TARGET,
     [](description& d, string_view v) { d.target()->fix_owner = v; }},
    {KEYWORD_TARGET_GROUP, scope::TARGET,
     [](description& d, string_view v) { d.target()->fix_group = v; }},
    {KEYWORD_NEEDS_CATEGORY, scope::TARGET, open_category},
    {KEYWORD_NEEDS_TEXT, scope::CATEGORY,
     [](description& d, string_view v) { d.category()->text = v; }},
    {KEYWORD_NEEDS_TYPE, scope::NEW_TYPE, open_type},
    {KEYWORD_NEEDS_VERSION, scope::TYPE,
     [](description& d, string_view v) { store_version(d.type()->release, v); }},
    {KEYWORD_NEEDS_PATCH, scope::TYPE,
     [](description& d, string_view v) { d.type()->release.patch = number_or_zero(v); }},
    {KEYWORD_NEEDS_PATH, scope::TYPE,
     [](description& d, string_view v) { d.type()->std_path = v; }},
    {KEYWORD_NEEDS_FILES, scope::TYPE, store_files},
    {KEYWORD_REQUIRED_PATCHES, scope::PRODUCT, store_patches},
    {KEYWORD_PATH, scope::PRODUCT, [](description& d, string_view v) { d.record.path = v; }},
    {KEYWORD_PATH_INFO, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.path_info, v, d.to_come); }},
    {KEYWORD_PATH_VARIABLE, scope::PRODUCT,
     [](description& d, string_view v) { d.record.path_env_var = v; }},
    {KEYWORD_OWNER, scope::PRODUCT, [](description& d, string_view v) { d.record.owner = v; }},
    {KEYWORD_OWNER_INFO, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.owner_info, v, d.to_come); }},
    {KEYWORD_GROUP, scope::PRODUCT, [](description& d, string_view v) { d.record.group = v; }},
    {KEYWORD_GROUP_INFO, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.group_info, v, d.to_come); }},
    {KEYWORD_ACCESS_INFO, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.other_access_info, v, d.to_come); }},
    {KEYWORD_NEEDED_TOOLS, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.needed_tools, v, d.to_come); }},
    {KEYWORD_FIXED_OWNERS, scope::FIXED_LIST,
     [](description& d, string_view v) { store_fixed_names(d, d.record.fix_owner, v); }},
    {KEYWORD_FIXED_GROUPS, scope::FIXED_LIST,
     [](description& d, string_view v) { store_fixed_names(d, d.record.fix_group, v); }},
}};

void append_text(long_text& text, string_view added, std::size_t to_come) {
  if (text) {
    const std::size_t size = text->size() + 1 + added.size();
    if (size > LARGE_TEXT && size > text->capacity()) text->reserve(size + to_come);
    *text += '\n';
    *text += added;
  } else {
    text = added;
  }
}

}  // namespace morvane
