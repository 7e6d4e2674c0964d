#include "catalogue/description_parser.h"

#include <array>
#include <cerrno>
#include <string>

#include "catalogue/description_keywords.h"
#include "catalogue/description_reader.h"
#include "console/message_format.h"
#include "console/message_table.h"
#include "platform/diagnostic.h"
#include "version/version.h"

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
      return d.target_index < static_cast<int>(TARGETS);
    case scope::TARGET:
      return d.target() != nullptr;
    case scope::CATEGORY:
      return d.category() != nullptr;
    case scope::NEW_TYPE:
      return d.category() != nullptr && d.type_index < static_cast<int>(TYPES) - 1;
    case scope::TYPE:
      return d.type() != nullptr;
    default:
      return true;
  }
}

// Reports on standard error that what the entry `entry` needs is not open.
void report_misplaced(const description& d, const keyword& entry) {
  switch (entry.needs) {
    case scope::NEW_TARGET:
      diagnose(fill("%s : Error in %s.descr : %s ignored (array overflow)!\n",
                    {PROGRAM_NAME, d.identifier, r[entry.number]}));
      return;
    case scope::TARGET:
      diagnose(fill("%s : Error in %s.descr : %s ignored !\n",
                    {PROGRAM_NAME, d.identifier, r[entry.number]}));
      return;
    default:
      // The report on the proposed directory has always named its neighbour, the patch level.
      const message_number named =
          entry.number == KEYWORD_NEEDS_PATH ? KEYWORD_NEEDS_PATCH : entry.number;
      diagnose(fill(
          "%s : Error in %s.descr : array overflow, or %s occured before %s or %s!\n",
          {PROGRAM_NAME, d.identifier, r[named], r[KEYWORD_NEEDS_CATEGORY], r[KEYWORD_TARGET]}));
  }
}

// Reads the entries of one description.
class parser {
 public:
  parser(input_file& file, const std::string& path, description& d)
      : file_(file), path_(path), description_(d) {
    for (std::size_t i = 0; i < texts_.size(); ++i) texts_[i] = r[KEYWORDS[i].number];
  }

  void read_entries() {
    for (;;) {
      const int c = file_.peek();
      if (c == input_file::END) return;
      if (c == '#') {
        file_.get();
        file_.skip_line(SKIPPED_LINE);
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
    for (std::size_t i = 0; i < texts_.size(); ++i) {
      if (texts_[i] != word_) continue;
      const bool disabled =
          KEYWORDS[i].needs == scope::FIXED_LIST && description_.fixed_lists_disabled;
      if (!disabled) return &KEYWORDS[i];
    }
    return nullptr;
  }

  // A rejected entry is not read further: its "=" is met next and reported as an entry of its own,
  // with an empty keyword. Where the rejected keyword is itself empty, that would never end, so its
  // line is skipped.
  void read_entry() {
    word_.clear();
    while (is_keyword_character(file_.peek())) word_ += static_cast<char>(file_.get());
    const keyword* entry = find_keyword();
    if (entry == nullptr) {
      diagnose(fill("%s : unkown keyword '%s' found in file '%s'\n", {PROGRAM_NAME, word_, path_}));
      file_.skip_line(SKIPPED_LINE);
      return;
    }
    if (is_open(description_, *entry)) {
      getvar(file_, value_, comment_);
      entry->store(description_, value_);
      return;
    }
    report_misplaced(description_, *entry);
    if (word_.empty()) file_.skip_line(SKIPPED_LINE);
  }

  input_file& file_;
  const std::string& path_;
  description& description_;
  std::array<string_view, KEYWORD_COUNT> texts_;
  std::string word_;
  std::string value_;
  std::string comment_;  // kept out of the value; nothing reads it
};

// Tells whether a file that could not be opened with `error` is not there, or cannot be.
bool is_missing(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

}  // namespace

read_outcome read_product(string_view directory, string_view identifier, product& record) {
  init_product(record);
  record.id = identifier;
  const std::string path = fill("%s/%s.descr", {directory, identifier});
  input_file file(path);
  if (file.is_open()) {
    record.descr_avail = DESCRIBED;
    description d{record, identifier};
    parser(file, path, d).read_entries();
  } else if (is_missing(file.error())) {
    return read_outcome::MISSING;
  }
  if (file.error() == 0) return read_outcome::DONE;
  diagnose(fill("%s : warning : description '%s' cannot be read\n", {PROGRAM_NAME, path}));
  const bool nothing_read = !file.is_open() || file.error() == EISDIR;
  return nothing_read ? read_outcome::IMPOSSIBLE : read_outcome::DONE;
}

}  // namespace morvane
