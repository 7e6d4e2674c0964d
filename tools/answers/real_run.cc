#include "answers/real_run.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <optional>

#include "answers/child_run.h"
#include "answers/earlier_files.h"
#include "answers/player.h"
#include "answers/question_name.h"
#include "platform/shell.h"
#include "text/words.h"

namespace morvane {

namespace {

// Follows the rehearsal in the child. What is to be known of it afterwards goes to `report`, a line
// of it that begins with a letter, ends with a NUL and is written before what it tells of.
class follower {
 public:
  follower(const rehearsal& rehearsed, std::FILE* report)
      : rehearsed_(rehearsed), report_(report) {}

  std::optional<std::string> reply(const question& asked) {
    if (parted_) return std::nullopt;
    const bool expected = next_ < rehearsed_.questions.size() &&
                          rehearsed_.questions[next_].identity == identity_of(asked);
    if (!expected) {
      part("the program asks something else: " + identity_of(asked));
      return std::nullopt;
    }
    return rehearsed_.questions[next_++].line;
  }

  bool make_directory(const std::string& path) {
    const auto& rehearsed = rehearsed_.deeds.directories;
    if (std::ranges::find(rehearsed, path) == rehearsed.end()) {
      part("another directory would be created: " + path);
      return false;
    }
    for (const std::string& each : missing_directories(path)) tell('D', each);
    return host_.make_directory(path);
  }

  write_outcome write_file(const std::string& name, earlier_file earlier,
                           const composition& compose) {
    const auto& rehearsed = rehearsed_.deeds.written;
    if (parted_ || written_ == rehearsed.size() || rehearsed[written_].first != name) {
      part("another file would be written: " + name);
      return write_outcome::NOT_OPENED;
    }
    const std::string& wanted = rehearsed[written_++].second;
    const auto compose_the_same = [&] {
      std::optional<std::string> content = compose();
      if (content != wanted) part("another content would be written to " + name);
      return content;
    };
    const write_outcome outcome = host_.write_file(name, earlier, compose_the_same);
    if (outcome != write_outcome::WRITTEN) part(name + " could not be written");
    return outcome;
  }

 private:
  void part(const std::string& why) {
    if (!parted_) tell('P', why);
    parted_ = true;
  }

  void tell(char kind, const std::string& text) {
    std::fputc(kind, report_);
    std::fwrite(text.c_str(), 1, text.size() + 1, report_);
    std::fflush(report_);
  }

  const rehearsal& rehearsed_;
  std::FILE* report_;
  effects host_ = effects_on_host();
  std::size_t next_ = 0;
  std::size_t written_ = 0;
  bool parted_ = false;
};

[[noreturn]] void follow(const rehearsal& rehearsed, std::FILE* report) {
  static product_table table;
  static follower following(rehearsed, report);
  effects watched = effects_on_host();
  watched.make_directory = [](const std::string& path) { return following.make_directory(path); };
  watched.write_file = [](const std::string& name, earlier_file earlier,
                          const composition& compose) {
    return following.write_file(name, earlier, compose);
  };
  use_effects(watched);
  take_answers_from(bytes_of([](const question& asked) { return following.reply(asked); }));
  run_program(table);
}

}  // namespace

run_outcome run_as_rehearsed(const rehearsal& rehearsed) {
  run_outcome outcome;
  const scratch_stream report = open_scratch_stream();
  const descriptor nothing(open("/dev/null", O_WRONLY | O_CLOEXEC));
  std::vector<std::string> names;
  for (const auto& [name, content] : rehearsed.deeds.files) names.push_back(name);
  std::optional<earlier_files> earlier = remember_files(names);
  if (report == nullptr || !nothing.is_open() || !earlier) {
    outcome.why = "what is there could not be saved beforehand";
    return outcome;
  }

  outcome.good =
      run_in_child({nothing.number(), STDERR_FILENO}, [&] { follow(rehearsed, report.get()); });
  if (outcome.good) return outcome;

  outcome.why = "the run did not come to its end";
  std::vector<std::string> directories;
  const std::string told = content_of(report);
  for (const std::string_view line : split_words(told, std::string_view("\0", 1))) {
    const std::string text(line.substr(1));
    if (line.starts_with('D')) {
      directories.push_back(text);
    } else {
      outcome.why = text;
    }
  }
  outcome.remains = restore_files(*earlier);
  std::ranges::reverse(directories);
  for (const std::string& each : directories) rmdir(each.c_str());
  for (const std::string& each : directories) {
    if (exists(each)) outcome.remains.push_back(each);
  }
  return outcome;
}

}  // namespace morvane
