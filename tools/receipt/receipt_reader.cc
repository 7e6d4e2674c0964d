#include "receipt/receipt_reader.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "answer_file/escaping.h"
#include "receipt/receipt_form.h"
#include "receipt/receipt_writer.h"
#include "tree/digest.h"
#include "tree/directory.h"

namespace morvane {

namespace {

constexpr unsigned MOST_MODE = 07777;

// Takes the first word off `line` and returns it.
std::string_view take_word(std::string_view& line) {
  const std::size_t blank = std::min(line.find(' '), line.size());
  const std::string_view word = line.substr(0, blank);
  line.remove_prefix(std::min(blank + 1, line.size()));
  return word;
}

template <typename Number>
std::optional<Number> number_in(std::string_view word, int base = 10) {
  Number number{};
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number, base);
  if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
  return number;
}

template <typename Value, typename Words>
bool take_named(std::string_view word, const Words& words, Value& taken) {
  const auto found = std::ranges::find(words, word);
  taken = static_cast<Value>(found - words.begin());
  return found != words.end();
}

bool is_identifier(std::string_view id) {
  return !id.empty() && id.find('/') == std::string_view::npos;
}

bool is_directory_name(const std::string& path) {
  return path.starts_with('/') && normal_path(path) == path;
}

// Reads line by line. The first fault ends it.
class receipt_parser {
 public:
  std::variant<receipt, receipt_fault> read(std::string_view text) {
    rest_ = text;
    if (rest_.size() > LONGEST_RECEIPT) {
      fail("the file is too long");
    } else {
      read_head();
      read_lists();
      read_entries();
    }
    if (!fault_) require_form(text);
    if (fault_) return *fault_;
    return std::move(read_);
  }

 private:
  void read_head() {
    next_line();
    require(line_ == RECEIPT_HEAD, "the first line is not '" + std::string(RECEIPT_HEAD) + "'");
    read_.id = text_of("product");
    require(is_identifier(read_.id), "not an identifier");
    read_.name = text_of("name");
    read_.version = text_of("version");
    read_.directory = text_of("directory");
    require(is_directory_name(read_.directory), "not an absolute directory in its normal form");
    read_.owner = text_of("owner");
    read_.group = text_of("group");
    read_.access = is_first_of("access", "yes", "no");
    read_.made_afterwards = is_first_of("made", "afterwards", "with the installation");
    read_.complete = is_first_of("complete", "yes", "no");
    read_.installed = time_of("installed");
    read_.configured = time_of("configured");
    read_.archive = digest_or_nothing("archive");
    read_.description = digest_or_nothing("description");
    next_line();
  }

  void read_lists() {
    for (; !fault_ && is_named("part"); next_line()) {
      read_.parts.push_back(unescaped(value_of("part")));
    }
    for (; !fault_ && is_named("patch-of"); next_line()) {
      read_.originals.push_back(unescaped(value_of("patch-of")));
      require(is_identifier(read_.originals.back()), "not an identifier");
    }
    for (; !fault_ && is_named("need"); next_line()) {
      receipt_need need;
      need.category = unescaped(value_of("need"));
      need.directory = text_of("need-directory");
      need.name = text_of("need-name");
      need.version = text_of("need-version");
      read_.needs.push_back(std::move(need));
    }
  }

  void read_entries() {
    if (fault_) return;
    const auto count = number_in<std::size_t>(value_of("entries"));
    if (!count) return fail("not a number of entries");
    for (std::size_t i = 0; i < *count && !fault_; ++i) {
      next_line();
      if (fault_) return;
      receipt_entry entry = entry_in(line_);
      if (fault_) return;
      if (!read_.entries.empty() && entry.path <= read_.entries.back().path) {
        return fail("the path does not stand behind the one before it");
      }
      read_.entries.push_back(std::move(entry));
    }
    ++number_;
    require(rest_.empty(), "there are more lines than entries");
  }

  receipt_entry entry_in(std::string_view line) {
    receipt_entry entry;
    require(take_named(take_word(line), KIND_WORDS, entry.kind), "not a kind of file");
    const auto mode = number_in<unsigned>(take_word(line), 8);
    require(mode && *mode <= MOST_MODE, "not a mode");
    entry.mode = mode.value_or(0);
    entry.owner = number<std::uint64_t>(take_word(line), "not the number of an owner");
    entry.group = number<std::uint64_t>(take_word(line), "not the number of a group");
    require(take_named(take_word(line), BEFORE_WORDS, entry.before), "not what lay there before");
    require(take_named(take_word(line), ORIGIN_WORDS, entry.origin), "not an origin");
    entry.path = unescaped(take_word(line));
    require(!entry.path.starts_with('/') && normal_path(entry.path) == entry.path,
            "not a path below the directory in its normal form");
    if (entry.kind == file_kind::FILE) {
      entry.size = number<std::uint64_t>(take_word(line), "not a size");
      entry.modified = number<std::int64_t>(take_word(line), "not a time");
      entry.digest = take_word(line);
      require(is_digest(entry.digest), "not a digest");
    }
    if (entry.kind == file_kind::LINK) {
      entry.target = unescaped(take_word(line));
      require(!entry.target.empty(), "not a target of a link");
    }
    require(line.empty(), "more words than an entry has");
    return entry;
  }

  template <typename Number>
  Number number(std::string_view word, const char* otherwise) {
    const auto found = number_in<Number>(word);
    require(found.has_value(), otherwise);
    return found.value_or(0);
  }

  void next_line() {
    if (fault_) return;
    ++number_;
    const std::size_t end = rest_.find('\n');
    if (end == std::string_view::npos) {
      return fail(rest_.empty() ? "the file ends too early"
                                : "the line does not end: the file was cut off");
    }
    line_ = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
  }

  bool is_named(std::string_view name) const {
    return line_.starts_with(name) && line_.substr(name.size()).starts_with(" =");
  }

  // Returns what stands behind the name in the line that was read.
  std::string_view value_of(std::string_view name) {
    require(is_named(name), "not '" + std::string(name) + " = ...'");
    if (fault_) return "";
    const std::string_view value = line_.substr(name.size() + 2);
    return value.substr(value.starts_with(' ') ? 1 : 0);
  }

  std::string text_of(std::string_view name) {
    next_line();
    return unescaped(value_of(name));
  }

  std::string unescaped(std::string_view written) {
    const auto text = unescape_file_name(written);
    require(text.has_value(), "'%' is not followed by two hexadecimal digits");
    return text.value_or("");
  }

  bool is_first_of(std::string_view name, std::string_view first, std::string_view second) {
    next_line();
    const std::string_view value = value_of(name);
    require(value == first || value == second,
            "neither '" + std::string(first) + "' nor '" + std::string(second) + "'");
    return value == first;
  }

  std::uint64_t time_of(std::string_view name) {
    next_line();
    const std::string_view value = value_of(name);
    const std::size_t point = std::min(value.find('.'), value.size());
    const auto seconds = number_in<std::uint64_t>(value.substr(0, point));
    const std::string_view digits = value.substr(std::min(point + 1, value.size()));
    const auto fraction = number_in<std::uint64_t>(digits);
    const bool is_time = seconds && fraction && digits.size() == FRACTION_DIGITS &&
                         *seconds < UINT64_MAX / NANOSECONDS;
    require(is_time, "not a time in seconds with nine digits behind the point");
    return is_time ? *seconds * NANOSECONDS + *fraction : 0;
  }

  std::string digest_or_nothing(std::string_view name) {
    next_line();
    const std::string_view value = value_of(name);
    require(value.empty() || is_digest(value), "not a digest");
    return std::string(value);
  }

  // What was read is written as it stands there: nothing has two forms.
  void require_form(std::string_view text) {
    const std::string form = receipt_text(read_);
    const auto differs = std::ranges::mismatch(form, text).in2;
    if (differs == text.end()) return;
    number_ = static_cast<std::size_t>(std::count(text.begin(), differs, '\n')) + 1;
    fail("not written as a receipt is");
  }

  void require(bool holds, std::string_view otherwise) {
    if (!holds) fail(std::string(otherwise));
  }

  void fail(std::string text) {
    if (!fault_) fault_ = receipt_fault{std::max<std::size_t>(number_, 1), std::move(text)};
  }

  std::string_view rest_;
  std::string_view line_;
  std::size_t number_ = 0;  // of that line
  receipt read_;
  std::optional<receipt_fault> fault_;
};

}  // namespace

std::variant<receipt, receipt_fault> read_receipt(std::string_view text) {
  return receipt_parser().read(text);
}

}  // namespace morvane
