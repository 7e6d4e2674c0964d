#include "answers/rehearsal.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <utility>

#include "answer_file/answer_writer.h"
#include "answers/child_run.h"
#include "answers/player.h"
#include "answers/question_name.h"
#include "answers/recorder.h"
#include "text/text.h"
#include "text/words.h"

namespace morvane {

namespace {

// A text is followed by a NUL, which none holds; a list or what may be absent by its number.
class packer {
 public:
  void add(std::string_view text) {
    packed_ += until_nul(text);
    packed_ += '\0';
  }
  void add(std::size_t number) { add(std::to_string(number)); }

  template <class LIST>
  void add_list(const LIST& list,
                const std::function<void(const typename LIST::value_type&)>& put) {
    add(list.size());
    for (const auto& each : list) put(each);
  }

  const std::string& text() const { return packed_; }

 private:
  std::string packed_;
};

class unpacker {
 public:
  explicit unpacker(std::string_view packed) : rest_(packed) {}

  std::string text() {
    std::string taken(until_nul(rest_));
    rest_.remove_prefix(std::min(taken.size() + 1, rest_.size()));
    return taken;
  }
  std::size_t number() { return std::strtoul(text().c_str(), nullptr, 10); }

  template <class ELEMENT>
  std::vector<ELEMENT> list(const std::function<ELEMENT()>& take) {
    std::vector<ELEMENT> elements;
    for (std::size_t left = number(); left > 0 && !rest_.empty(); --left)
      elements.push_back(take());
    return elements;
  }

 private:
  std::string_view rest_;
};

// Returns the answer file of a run that is at its end, with gaps where nothing was proposed.
std::string results_of(const recorder& heard, const player& played) {
  std::vector<written_section> sections = heard.results();
  for (written_section& section : sections) {
    for (written_answer& each : section.answers) {
      if (played.lacks_proposal(section.title, each.name)) each.value.clear();
    }
  }
  return write_answers(sections);
}

// What the child does: its objects live until the process ends, and are read then.
[[noreturn]] void play_in_memory(const answer_file& file, std::FILE* report) {
  static product_table table;
  static rehearsal seen;
  static player played(file, table);
  static recorder heard(bytes_of([](const question& asked) {
    std::optional<std::string> line = played.reply(asked);
    if (line) seen.questions.push_back({identity_of(asked), *line});
    return line;
  }));
  static std::FILE* to_parent = report;
  std::atexit([] {
    seen.findings = played.findings();
    if (played.finished()) {
      seen.plan = plan_of(table);
      seen.results = results_of(heard, played);
    }
    const std::string packed = pack(seen);
    const bool written = std::fwrite(packed.data(), 1, packed.size(), to_parent) == packed.size() &&
                         std::fflush(to_parent) == 0;
    if (!written) std::_Exit(EXIT_FAILURE);  // half a report is none
  });
  use_effects(effects_in_memory(seen.deeds));
  take_answers_from([](const question& asked) { return heard.next(asked); });
  run_program(table);
}

// Returns the last lines of what the program wrote, as far as they say something.
std::string last_words(const std::string& written) {
  constexpr std::size_t MOST_LINES = 3;
  const std::vector<std::string_view> lines = split_words(written, "\n");
  std::string words;
  for (std::size_t i = lines.size() - std::min(lines.size(), MOST_LINES); i < lines.size(); ++i) {
    words += (words.empty() ? "" : " / ") + std::string(lines[i]);
  }
  return words;
}

}  // namespace

std::optional<rehearsal> rehearse(const answer_file& file) {
  const scratch_stream report = open_scratch_stream();
  const scratch_stream screen = open_scratch_stream();
  const scratch_stream errors = open_scratch_stream();
  if (report == nullptr || screen == nullptr || errors == nullptr) return std::nullopt;
  const bool ended_well = run_in_child({fileno(screen.get()), fileno(errors.get())},
                                       [&] { play_in_memory(file, report.get()); });
  rehearsal seen = unpack(content_of(report));
  seen.errors = content_of(errors);
  if (!ended_well && seen.findings.empty()) {
    seen.findings.push_back(
        {.trouble = answer_trouble::ENDED,
         .text = "the run ends before its end: " + last_words(content_of(screen) + seen.errors)});
  }
  return seen;
}

std::string pack(const rehearsal& packed) {
  packer to;
  to.add_list(packed.findings, [&](const answer_finding& each) {
    to.add(static_cast<std::size_t>(each.trouble));
    to.add(each.line);
    for (const std::string* text : {&each.section, &each.name, &each.text, &each.proposal}) {
      to.add(*text);
    }
  });
  to.add_list(packed.questions, [&](const answered_question& each) {
    to.add(each.identity);
    to.add(each.line);
  });
  to.add_list(packed.deeds.directories, [&](const std::string& each) { to.add(each); });
  to.add_list(packed.deeds.files, [&](const auto& each) {
    to.add(each.first);
    to.add(each.second ? std::size_t{1} : std::size_t{0});
    to.add(each.second.value_or(""));
  });
  to.add_list(packed.deeds.written, [&](const auto& each) {
    to.add(each.first);
    to.add(each.second);
  });
  to.add_list(packed.plan, [&](const planned_product& each) {
    for (const std::string* text :
         {&each.id, &each.version, &each.directory, &each.owner, &each.group}) {
      to.add(*text);
    }
    to.add(static_cast<std::size_t>(each.other_access));
    to.add(static_cast<std::size_t>(each.again));
    to.add_list(each.parts, [&](const planned_part& part) {
      to.add(part.name);
      to.add_list(part.needs, [&](const planned_need& need) {
        to.add(need.category);
        to.add(need.supplier);
      });
    });
  });
  to.add(packed.results);
  return to.text();
}

rehearsal unpack(std::string_view text) {
  unpacker from(text);
  rehearsal unpacked;
  // The members stand in the braces in the order in which they are taken.
  unpacked.findings = from.list<answer_finding>([&] {
    return answer_finding{static_cast<answer_trouble>(from.number()),
                          from.number(),
                          from.text(),
                          from.text(),
                          from.text(),
                          from.text()};
  });
  unpacked.questions = from.list<answered_question>([&] {
    return answered_question{from.text(), from.text()};
  });
  unpacked.deeds.directories = from.list<std::string>([&] { return from.text(); });
  using written_file = std::pair<std::string, std::optional<std::string>>;
  const auto files = from.list<written_file>([&] {
    std::string name = from.text();
    const bool there = from.number() != 0;
    std::string content = from.text();
    return written_file(name, there ? std::optional(content) : std::nullopt);
  });
  for (const auto& [name, content] : files) unpacked.deeds.files[name] = content;
  unpacked.deeds.written = from.list<std::pair<std::string, std::string>>([&] {
    return std::pair<std::string, std::string>{from.text(), from.text()};
  });
  unpacked.plan = from.list<planned_product>([&] {
    return planned_product{from.text(),
                           from.text(),
                           from.text(),
                           from.text(),
                           from.text(),
                           from.number() != 0,
                           from.number() != 0,
                           from.list<planned_part>([&] {
                             return planned_part{from.text(), from.list<planned_need>([&] {
                                                   return planned_need{from.text(), from.text()};
                                                 })};
                           })};
  });
  unpacked.results = from.text();
  return unpacked;
}

}  // namespace morvane
