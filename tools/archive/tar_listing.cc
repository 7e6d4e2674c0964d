#include "archive/tar_listing.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <utility>

#include "report/finding.h"

extern char** environ;

namespace morvane {

namespace {

using std::string;
using std::string_view;

constexpr std::size_t BLOCK_SIZE = 65'536;

// A name of as many bytes takes up to four times as many; nobody has longer ones.
constexpr std::size_t LONGEST_LINE = 65'536;

constexpr string_view KINDS = "-dlh";  // in the order of the enumeration

// Starts tar between two files, or the null device where there is none; returns its process, or 0.
pid_t start_tar(std::initializer_list<const char*> options, const descriptor& input,
                const descriptor& output) {
  std::vector<string> texts = {"tar"};
  texts.insert(texts.end(), options.begin(), options.end());
  std::vector<char*> arguments;
  arguments.reserve(texts.size() + 1);
  for (string& text : texts) arguments.push_back(text.data());
  arguments.push_back(nullptr);
  // What tar says must not depend on the operator's language and options.
  std::vector<string> settings = {"LC_ALL=C", "TAR_OPTIONS="};
  std::vector<char*> environment;
  environment.reserve(settings.size());
  for (string& setting : settings) environment.push_back(setting.data());
  for (char** each = environ; *each != nullptr; ++each) {
    const string_view variable(*each);
    if (!variable.starts_with("LC_ALL=") && !variable.starts_with("TAR_OPTIONS=")) {
      environment.push_back(*each);
    }
  }
  environment.push_back(nullptr);

  posix_spawn_file_actions_t files;
  if (posix_spawn_file_actions_init(&files) != 0) return 0;
  const auto use = [&files](const descriptor& file, int number, int flags) {
    return file.is_open() ? posix_spawn_file_actions_adddup2(&files, file.number(), number)
                          : posix_spawn_file_actions_addopen(&files, number, "/dev/null", flags, 0);
  };
  pid_t child = 0;
  const bool started =
      use(input, STDIN_FILENO, O_RDONLY) == 0 && use(output, STDOUT_FILENO, O_WRONLY) == 0 &&
      use({}, STDERR_FILENO, O_WRONLY) == 0 &&
      posix_spawnp(&child, "tar", &files, nullptr, arguments.data(), environment.data()) == 0;
  posix_spawn_file_actions_destroy(&files);
  return started ? child : 0;
}

bool ended_well(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Tells whether the tar of this host can put names in quotes.
bool can_quote() {
  static const bool result = [] {
    const pid_t child = start_tar({"--quoting-style=c", "--version"}, {}, {});
    return child != 0 && ended_well(child);
  }();
  return result;
}

// Hands out the lines of an open file.
class line_reader {
 public:
  explicit line_reader(const descriptor& file) : file_(file) {}

  // Returns the next line; an end or a failure is the end, as is a line that is too long.
  std::optional<string> next() {
    for (;;) {
      const std::size_t end = text_.find('\n', begin_);
      if (end != string::npos) {
        string line = text_.substr(begin_, end - begin_);
        begin_ = end + 1;
        return line;
      }
      if (text_.size() - begin_ > LONGEST_LINE || !read_more()) return std::nullopt;
    }
  }

 private:
  bool read_more() {
    std::array<char, BLOCK_SIZE> block;
    const ssize_t count = read_uninterrupted(file_, block.data(), block.size());
    if (count <= 0) return false;
    text_.erase(0, std::exchange(begin_, 0));
    text_.append(block.data(), static_cast<std::size_t>(count));
    return true;
  }

  const descriptor& file_;
  string text_;
  std::size_t begin_ = 0;
};

char escaped_byte(string_view& text) {
  if (text.front() < '0' || text.front() > '7') {
    constexpr string_view LETTERS = "abfnrtv";
    const std::size_t letter = LETTERS.find(text.front());
    const char byte =
        letter == string_view::npos ? text.front() : string_view("\a\b\f\n\r\t\v")[letter];
    text.remove_prefix(1);
    return byte;
  }
  unsigned value = 0;
  for (int digits = 0; digits < 3 && !text.empty() && text[0] >= '0' && text[0] <= '7'; ++digits) {
    value = 8 * value + static_cast<unsigned>(text.front() - '0');
    text.remove_prefix(1);
  }
  return static_cast<char>(value);
}

// Takes a text in quotes, as in C, off the start of `line`; returns nothing where there is none.
std::optional<string> take_quoted(string_view& line) {
  if (!line.starts_with('"')) return std::nullopt;
  line.remove_prefix(1);
  string text;
  while (!line.empty()) {
    const char c = line.front();
    line.remove_prefix(1);
    if (c == '"') return text;
    text += c == '\\' && !line.empty() ? escaped_byte(line) : c;
  }
  return std::nullopt;
}

// Returns the member that a line tells of.
std::optional<archive_member> member_of(string_view line) {
  archive_member member;
  const std::size_t quote = line.find('"');
  if (quote == string_view::npos || quote < 10) return std::nullopt;
  if (const std::size_t kind = KINDS.find(line[0]); kind != string_view::npos) {
    member.kind = static_cast<member_kind>(kind);
  }
  member.mode = (string_view("sS").find(line[3]) != string_view::npos ? 04000U : 0U) |
                (string_view("sS").find(line[6]) != string_view::npos ? 02000U : 0U);
  line.remove_prefix(quote);
  std::optional<string> name = take_quoted(line);
  if (!name) return std::nullopt;
  member.name = std::move(*name);
  while (member.name.size() > 1 && member.name.ends_with('/')) member.name.pop_back();
  const std::size_t target = line.find('"');
  if (target == string_view::npos) return member;
  line.remove_prefix(target);
  member.target = take_quoted(line).value_or("");
  return member;
}

// Tells whether both would be installed alike. What has no name has none that could be compared.
bool are_alike(const archive_member& listed, const archive_member& read) {
  constexpr unsigned SET_ID_BITS = 06000;
  return listed.kind == read.kind && (listed.name == read.name || read.name.empty()) &&
         listed.target == read.target && listed.mode == (read.mode & SET_ID_BITS);
}

}  // namespace

tar_listing::tar_listing(const string& path) {
  if (!can_quote()) return;
  const descriptor archive = open_for_reading(path);
  std::array<int, 2> ends{};
  if (!archive.is_open() || pipe2(ends.data(), O_CLOEXEC) != 0) return;
  list_ = descriptor(ends[0]);
  const descriptor output(ends[1]);
  tar_ = start_tar({"--list", "--verbose", "--numeric-owner", "--quoting-style=c",
                    "--absolute-names", "--warning=none", "--file=-"},
                   archive, output);
}

tar_listing::~tar_listing() {
  if (tar_ == 0) return;
  kill(tar_, SIGKILL);
  wait();
}

bool tar_listing::wait() {
  return ended_well(std::exchange(tar_, 0));
}

string tar_listing::difference_from(const std::vector<archive_member>& members) {
  if (tar_ == 0) return "";
  line_reader lines(list_);
  for (const archive_member& member : members) {
    const std::optional<string> line = lines.next();
    if (!line) return "tar does not list " + in_quotes(member.name) + ", nor what is behind it";
    const std::optional<archive_member> listed = member_of(*line);
    if (!listed || !are_alike(*listed, member)) {
      return "tar lists " + in_quotes(listed ? listed->name : *line) + " in the place of " +
             in_quotes(member.name) + ", or another kind or mode of it";
    }
  }
  if (const std::optional<string> line = lines.next()) {
    return "tar lists more: " + in_quotes(*line);
  }
  return wait() ? "" : "tar fails behind its last member";
}

}  // namespace morvane
