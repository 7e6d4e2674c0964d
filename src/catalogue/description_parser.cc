#include "catalogue/description_parser.h"

#include <algorithm>
#include <array>
#include <string>

#include "catalogue/description_reader.h"
#include "console/message_format.h"
#include "console/message_table.h"
#include "platform/diagnostic.h"
#include "platform/number.h"
#include "platform/words.h"
#include "version/version.h"

namespace morvane {

namespace {

using std::string_view;

// The bytes of a comment or of the rest of a faulty line that are skipped at once; what is beyond
// is read as further entries.
constexpr std::size_t SKIPPED_LINE = 255;

// What must be open, or have room, for an entry to be accepted.
enum class scope {
  PRODUCT,
  FIXED_LISTS,  // not disabled by an explicit description state
  NEW_TARGET,   // room for another target
  TARGET,
  CATEGORY,
  NEW_TYPE,  // a category dependency with room for another type
  TYPE,
};

// The record being filled and the place in it where entries of targets, category dependencies and
// types belong: the running indices are -1 while nothing is open and may be one beyond the last.
struct description {
  product& record;
  string_view identifier;
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

void store_description_state(description& d, string_view value) {
  d.record.descr_avail = number_or_zero(value);
  if (d.record.descr_avail == 0) {
    d.record.descr_avail = DESCRIBED;
  } else {
    d.fixed_lists_disabled = true;
  }
}

// Stores a version "1.2.3" into the three numbers of `versioned`; parts that are missing are 0 and
// parts beyond the third are ignored.
template <typename Versioned>
void store_version(Versioned& versioned, string_view value) {
  std::array<int, 3> parts{};
  for (int& part : parts) {
    const std::size_t dot = std::min(value.find('.'), value.size());
    part = number_or_zero(value.substr(0, dot));
    value.remove_prefix(std::min(dot + 1, value.size()));
  }
  versioned.version = parts[0];
  versioned.subversion = parts[1];
  versioned.minorversion = parts[2];
}

// A target beyond the last one that a record holds is still counted, so that the entries that
// belong to it are refused; it is kept nowhere.
void open_target(description& d, string_view value) {
  if (value.empty()) return;
  ++d.target_index;
  d.category_index = -1;
  d.type_index = -1;
  if (d.target_index == static_cast<int>(TARGETS)) return;
  auto& slot = d.record.target_dep[static_cast<std::size_t>(d.target_index)];
  slot = std::make_unique<target_dep>();
  slot->target = value;
}

// As with targets, a category dependency beyond the last one is counted, but kept nowhere.
void open_category(description& d, string_view value) {
  if (value.empty()) return;
  ++d.category_index;
  d.type_index = -1;
  if (d.category_index >= static_cast<int>(CATEGORIES)) return;
  auto& slot = d.target()->category_dep[static_cast<std::size_t>(d.category_index)];
  slot = std::make_unique<category_dep>();
  slot->category = value;
}

void open_type(description& d, string_view value) {
  if (value.empty()) return;
  ++d.type_index;
  auto& slot = d.category()->type_dep[static_cast<std::size_t>(d.type_index)];
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

// Stores a list of patch numbers separated by blanks or tabs, and -1 behind them. Behind each
// number the reader moves to the next separator and from there to the next digit, so that only the
// first number can have a sign, and a blank before the first number makes it count twice.
void store_patches(description& d, string_view value) {
  auto& patches = d.record.needed_patches;
  for (std::size_t k = 0;; ++k) {
    const bool last = k == patches.size() - 1;
    patches[k] = last ? -1 : leading_number(value).value_or(-1);
    if (patches[k] == -1) return;
    value.remove_prefix(std::min(value.find_first_of(" \t"), value.size()));
    value.remove_prefix(std::min(value.find_first_of("0123456789"), value.size()));
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
  const bool ends_in_white_space =
      !value.empty() && WHITE_SPACE.find(value.back()) != string_view::npos;
  if (ends_in_white_space && count < names.size()) names[count] = "";
  d.record.descr_avail = FIXED_LISTS;
}

struct keyword {
  message_number number;  // of its text
  scope needs;
  void (*store)(description& d, string_view value);
};

// The keywords in the order in which they are tried: where two texts are equal, the first counts.
constexpr keyword KEYWORDS[] = {
    {KEYWORD_DESCRIPTION_STATE, scope::PRODUCT, store_description_state},
    {KEYWORD_NAME, scope::PRODUCT, [](description& d, string_view v) { d.record.name = v; }},
    {KEYWORD_FULL_NAME, scope::PRODUCT,
     [](description& d, string_view v) { d.record.full_name = v; }},
    {KEYWORD_VERSION, scope::PRODUCT,
     [](description& d, string_view v) { store_version(d.record, v); }},
    {KEYWORD_PATCH, scope::PRODUCT,
     [](description& d, string_view v) { d.record.patch = number_or_zero(v); }},
    {KEYWORD_CATEGORY, scope::PRODUCT,
     [](description& d, string_view v) { d.record.category = v; }},
    {KEYWORD_TYPE, scope::PRODUCT, [](description& d, string_view v) { d.record.type = v; }},
    {KEYWORD_ABSTRACT, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.abstract, v); }},
    {KEYWORD_HARDWARE, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.hardware, v); }},
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
     [](description& d, string_view v) { store_version(*d.type(), v); }},
    {KEYWORD_NEEDS_PATCH, scope::TYPE,
     [](description& d, string_view v) { d.type()->patch = number_or_zero(v); }},
    {KEYWORD_NEEDS_PATH, scope::TYPE,
     [](description& d, string_view v) { d.type()->std_path = v; }},
    {KEYWORD_NEEDS_FILES, scope::TYPE, store_files},
    {KEYWORD_REQUIRED_PATCHES, scope::PRODUCT, store_patches},
    {KEYWORD_PATH, scope::PRODUCT, [](description& d, string_view v) { d.record.path = v; }},
    {KEYWORD_PATH_INFO, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.path_info, v); }},
    {KEYWORD_PATH_VARIABLE, scope::PRODUCT,
     [](description& d, string_view v) { d.record.path_env_var = v; }},
    {KEYWORD_OWNER, scope::PRODUCT, [](description& d, string_view v) { d.record.owner = v; }},
    {KEYWORD_OWNER_INFO, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.owner_info, v); }},
    {KEYWORD_GROUP, scope::PRODUCT, [](description& d, string_view v) { d.record.group = v; }},
    {KEYWORD_GROUP_INFO, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.group_info, v); }},
    {KEYWORD_ACCESS_INFO, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.other_access_info, v); }},
    {KEYWORD_NEEDED_TOOLS, scope::PRODUCT,
     [](description& d, string_view v) { append_text(d.record.needed_tools, v); }},
    {KEYWORD_FIXED_OWNERS, scope::FIXED_LISTS,
     [](description& d, string_view v) { store_fixed_names(d, d.record.fix_owner, v); }},
    {KEYWORD_FIXED_GROUPS, scope::FIXED_LISTS,
     [](description& d, string_view v) { store_fixed_names(d, d.record.fix_group, v); }},
};

// Tells whether what an entry needs is open; reports on standard error where it is not.
bool accepts(const description& d, const keyword& word) {
  bool accepted = true;
  switch (word.needs) {
    case scope::PRODUCT:
    case scope::FIXED_LISTS:
      return true;
    case scope::NEW_TARGET:
      if (d.target_index < static_cast<int>(TARGETS)) return true;
      diagnose(fill("%s : Error in %s.descr : %s ignored (array overflow)!\n",
                    {PROGRAM_NAME, d.identifier, r[word.number]}));
      return false;
    case scope::TARGET:
      if (d.target() != nullptr) return true;
      diagnose(fill("%s : Error in %s.descr : %s ignored !\n",
                    {PROGRAM_NAME, d.identifier, r[word.number]}));
      return false;
    case scope::CATEGORY:
      accepted = d.category() != nullptr;
      break;
    case scope::NEW_TYPE:
      accepted = d.category() != nullptr && d.type_index < static_cast<int>(TYPES) - 1;
      break;
    case scope::TYPE:
      accepted = d.type() != nullptr;
      break;
  }
  if (accepted) return true;
  // The report on the proposed directory has always named its neighbour, the patch level.
  const message_number named =
      word.number == KEYWORD_NEEDS_PATH ? KEYWORD_NEEDS_PATCH : word.number;
  diagnose(
      fill("%s : Error in %s.descr : array overflow, or %s occured before %s or %s!\n",
           {PROGRAM_NAME, d.identifier, r[named], r[KEYWORD_NEEDS_CATEGORY], r[KEYWORD_TARGET]}));
  return false;
}

// Reads the entries of one description.
class parser {
 public:
  parser(description_stream& stream, const std::string& path, description& d)
      : stream_(stream), path_(path), description_(d) {
    for (std::size_t i = 0; i < texts_.size(); ++i) texts_[i] = r[KEYWORDS[i].number];
  }

  void read_entries() {
    for (;;) {
      const int c = stream_.peek();
      if (c == description_stream::END) return;
      if (c == '#') {
        stream_.get();
        stream_.skip_line(SKIPPED_LINE);
      } else if (is_white_space(c)) {
        stream_.get();
      } else {
        read_entry();
      }
    }
  }

 private:
  static bool is_keyword_character(int c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
  }

  // Returns the keyword that was read, or null where it is none of the table's.
  const keyword* find_keyword() const {
    for (std::size_t i = 0; i < texts_.size(); ++i) {
      if (texts_[i] != word_) continue;
      const bool disabled =
          KEYWORDS[i].needs == scope::FIXED_LISTS && description_.fixed_lists_disabled;
      if (!disabled) return &KEYWORDS[i];
    }
    return nullptr;
  }

  // A rejected entry is not read further: its "=" is met next and reported as an entry of its own,
  // with an empty keyword. Where the rejected keyword is itself empty, that would never end, so its
  // line is skipped.
  void read_entry() {
    word_.clear();
    while (is_keyword_character(stream_.peek())) word_ += static_cast<char>(stream_.get());
    const keyword* found = find_keyword();
    if (found == nullptr) {
      diagnose(fill("%s : unkown keyword '%s' found in file '%s'\n", {PROGRAM_NAME, word_, path_}));
      stream_.skip_line(SKIPPED_LINE);
    } else if (accepts(description_, *found)) {
      getvar(stream_, value_, comment_);
      found->store(description_, value_);
    } else if (word_.empty()) {
      stream_.skip_line(SKIPPED_LINE);
    }
  }

  description_stream& stream_;
  const std::string& path_;
  description& description_;
  std::array<string_view, std::size(KEYWORDS)> texts_;
  std::string word_;
  std::string value_;
  std::string comment_;
};

}  // namespace

void read_product(string_view directory, string_view identifier, product& record) {
  init_product(record);
  record.id = identifier;
  const std::string path = fill("%s/%s.descr", {directory, identifier});
  description_stream stream(path);
  if (!stream.is_open()) return;
  record.descr_avail = DESCRIBED;
  description d{record, identifier};
  parser(stream, path, d).read_entries();
}

void append_text(long_text& text, string_view added) {
  if (text) {
    *text += '\n';
    *text += added;
  } else {
    text = added;
  }
}

}  // namespace morvane
