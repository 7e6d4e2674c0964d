#include "catalogue/description_parser.h"

#include <array>
#include <cerrno>
#include <string>

#include "catalogue/description_keywords.h"
#include "catalogue/description_reader.h"
#include "catalogue/product_files.h"
#include "messages/table.h"
#include "text/white_space.h"

namespace morvane {

namespace {

using std::string_view;

// The bytes of a comment or of the rest of a faulty line that are skipped at once; what is beyond
// is read as further entries.
constexpr std::size_t SKIPPED_LINE = 255;

// Tells whether what the entry `entry` needs is open.
bool is_open(const description& d, const keyword& entry) {
  switch (entry.needs) {
    case scope::NEW_TARGET:
      return d.targets <= TARGETS;
    case scope::TARGET:
      return d.target() != nullptr;
    case scope::CATEGORY:
      return d.category() != nullptr;
    case scope::NEW_TYPE:
      return d.category() != nullptr && d.types < TYPES;
    case scope::TYPE:
      return d.type() != nullptr;
    default:
      return true;
  }
}

// Returns what is wrong where that is not open.
fault_kind misplacement_of(const keyword& entry) {
  switch (entry.needs) {
    case scope::NEW_TARGET:
      return fault_kind::NO_ROOM_FOR_TARGET;
    case scope::TARGET:
      return fault_kind::OUTSIDE_TARGET;
    default:
      return fault_kind::OUTSIDE_NEED;
  }
}

// Reads the entries of one description.
class parser {
 public:
  parser(input_file& file, string_view path, description& d, const fault_listener& listener,
         const entry_listener& entries)
      : file_(file), path_(path), description_(d), listener_(listener), entries_(entries) {
    for (std::size_t i = 0; i < texts_.size(); ++i) texts_[i] = r[KEYWORDS[i].number];
  }

  void report(fault_kind kind, message_number entry = {}) const {
    listener_({kind, description_.identifier, path_, place_, word_, entry});
  }

  void read_entries() {
    for (;;) {
      const int c = file_.peek();
      if (c == input_file::END) return;
      if (c == '#') {
        read_comment();
      } else if (is_white_space(c)) {
        file_.get();
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
    const string_view word = word_;
    for (std::size_t i = 0; i < texts_.size(); ++i) {
      if (texts_[i] != word) continue;
      const bool disabled =
          KEYWORDS[i].needs == scope::FIXED_LIST && description_.fixed_lists_disabled;
      if (!disabled) return &KEYWORDS[i];
    }
    return nullptr;
  }

  void hand_over(message_number keyword, string_view value) const {
    if (entries_) entries_({place_, keyword, value});
  }

  void read_comment() {
    place_ = file_.place();
    file_.get();
    comment_.clear();
    file_.read_line(SKIPPED_LINE, comment_);
    string_view line = comment_;
    if (line.ends_with('\n')) line.remove_suffix(1);
    hand_over({}, line);
  }

  // A rejected entry is not read further: its "=" is met next and reported as an entry of its own,
  // with an empty keyword. Where the rejected keyword is itself empty, that would never end, so its
  // line is skipped.
  void read_entry() {
    place_ = file_.place();
    word_.clear();
    file_.read_while([](int c) { return is_keyword_character(c); }, word_);
    const keyword* entry = find_keyword();
    if (entry == nullptr) {
      report(fault_kind::UNKNOWN_KEYWORD);
      file_.skip_line(SKIPPED_LINE);
      return;
    }
    if (is_open(description_, *entry)) {
      const std::optional<fault_kind> fault = getvar(file_, value_, comment_);
      if (fault) report(*fault, entry->number);
      description_.to_come = file_.to_come();
      entry->store(description_, value_);
      hand_over(entry->number, value_);
      return;
    }
    report(misplacement_of(*entry), entry->number);
    if (word_.empty()) file_.skip_line(SKIPPED_LINE);
  }

  input_file& file_;
  string_view path_;
  description& description_;
  const fault_listener& listener_;
  const entry_listener& entries_;
  place_in_file place_;  // of the entry or comment
  std::array<string_view, KEYWORD_COUNT> texts_;
  std::string word_;
  std::string value_;
  std::string comment_;  // a line of its own, or what is kept out of the value, which nobody reads
};

// Tells whether a file that could not be opened with `error` is not there, or cannot be.
bool is_missing(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

}  // namespace

read_outcome read_product(string_view directory, string_view identifier, product& record,
                          const fault_listener& listener, const entry_listener& entries) {
  init_product(record);
  record.id = identifier;
  const std::string path = description_path(directory, identifier);
  input_file file(path);
  if (file.is_open()) {
    record.descr_avail = DESCRIBED;
    description d{record, identifier};
    parser(file, path, d, listener, entries).read_entries();
  } else if (is_missing(file.error())) {
    return read_outcome::MISSING;
  }
  if (file.error() == 0) return read_outcome::DONE;
  listener({fault_kind::CANNOT_BE_READ, identifier, path, file.place(), ""});
  const bool nothing_read = !file.is_open() || file.error() == EISDIR;
  return nothing_read ? read_outcome::IMPOSSIBLE : read_outcome::DONE;
}

void read_product_in(string_view text, string_view identifier, product& record) {
  init_product(record);
  record.id = identifier;
  record.descr_avail = DESCRIBED;
  input_file file = input_file::holding(text);
  description d{record, identifier};
  const fault_listener tell_nobody = [](const description_fault&) {};
  const entry_listener hand_over_nothing = nullptr;
  parser(file, "", d, tell_nobody, hand_over_nothing).read_entries();
}

}  // namespace morvane
