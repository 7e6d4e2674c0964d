#include "answers/answers_command.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "answer_file/answer_reader.h"
#include "answers/answers_report.h"
#include "answers/question_name.h"
#include "answers/real_run.h"
#include "answers/recording.h"
#include "answers/rehearsal.h"
#include "answers/text_file.h"
#include "command/command_line.h"
#include "driver/start_up.h"

namespace morvane {

namespace {

struct answers_options {
  bool json = false;
  bool plan = false;
  variable_values variables;
  std::string products;
  std::string reconfigured;
};

bool take_format(const std::string& name, answers_options& options) {
  options.json = name == "json";
  return options.json || name == "text";
}

bool take_variable(const std::string& setting, variable_values& variables) {
  const std::size_t sign = setting.find('=');
  if (sign == std::string::npos || sign == 0) return false;
  variables[setting.substr(0, sign)] = setting.substr(sign + 1);
  return true;
}

command described_command(answers_options& options) {
  return {"morvane-answers",
          "record|template|check|play FILE",
          "Keeps the answers of a run, checks them, and plays them again.",
          {{"plan", "", "check, play: show what is configured, and where",
            [&](const std::string&) { return options.plan = true; }},
           {"set", "NAME=VALUE", "check, play: the value of a variable of FILE",
            [&](const std::string& setting) { return take_variable(setting, options.variables); }},
           {"format", "FORMAT", "check, play: text or json",
            [&](const std::string& name) { return take_format(name, options); }},
           {"products", "\"ID...\"", "template: the products to install",
            [&](const std::string& list) {
              options.products = list;
              return true;
            }},
           {"reconfigure", "\"ID...\"", "template: the products to configure again",
            [&](const std::string& list) {
              options.reconfigured = list;
              return true;
            }}}};
}

// As the program does when it starts: here files are opened, and children waited for, before.
void set_up_process() {
  open_missing_descriptors();
  signal(SIGCHLD, SIG_DFL);
  signal(SIGXFSZ, SIG_IGN);
}

class answers_command {
 public:
  answers_command(const command& described, const answers_options& options, std::string file)
      : described_(described), options_(options), file_(std::move(file)) {}

  exit_status record() const {
    if (!may_put_file(file_)) return complain_of_file();
    record_run(file_, [this](std::string_view why) { complain(described_, why); });
  }

  exit_status make_template() const {
    if (options_.products.empty() && options_.reconfigured.empty()) {
      complain(described_, "template needs --products or --reconfigure");
      return exit_status::WRONG_USE;
    }
    if (access(file_.c_str(), F_OK) == 0) {
      errno = EEXIST;
      return complain_of_file();
    }
    if (!may_put_file(file_)) return complain_of_file();
    answer_file file;
    file.sections.push_back({});
    file.sections[0].answers.push_back({std::string(PRODUCTS), options_.products});
    file.sections[0].answers.push_back({std::string(RECONFIGURE), options_.reconfigured});
    std::optional<rehearsal> seen = rehearse(file);
    if (!seen) return complain_of_rehearsal();
    std::erase_if(seen->findings, [](const answer_finding& found) {
      return found.trouble == answer_trouble::MISSING;
    });
    if (!seen->is_good()) {
      print_findings(*seen);
      return exit_status::REFUSED;
    }
    return put_text_file(file_, seen->results) ? exit_status::GOOD : complain_of_file();
  }

  exit_status check() const {
    rehearsal seen;
    const exit_status status = rehearse_file(seen);
    if (status == exit_status::WRONG_USE) return status;
    return report(seen, status, "") ? status : exit_status::WRONG_USE;
  }

  exit_status play() const {
    rehearsal seen;
    const exit_status status = rehearse_file(seen);
    if (status == exit_status::WRONG_USE) return status;
    if (status == exit_status::REFUSED) {
      return report(seen, status, "") ? status : exit_status::WRONG_USE;
    }
    const run_outcome outcome = run_as_rehearsed(seen);
    seen.errors.clear();  // the run has said it itself
    if (!outcome.good) {
      complain(described_, outcome.why + "; what it made was taken back");
      for (const std::string& name : outcome.remains) {
        complain(described_, name + ": could not be taken back");
      }
    }
    const exit_status ended = outcome.good ? exit_status::GOOD : exit_status::FAILED;
    return report(seen, ended, outcome.why) ? ended : exit_status::FAILED;
  }

 private:
  // Puts what came of it into `seen`.
  exit_status rehearse_file(rehearsal& seen) const {
    const std::optional<std::string> text = read_text_file(file_, LONGEST_ANSWER_FILE);
    if (!text) return complain_of_file();
    const answer_reading reading = read_answers(*text, options_.variables);
    for (const answer_fault& fault : reading.faults) {
      seen.findings.push_back(
          {.trouble = answer_trouble::UNREADABLE, .line = fault.line, .text = fault.text});
    }
    if (!seen.is_good()) return exit_status::REFUSED;
    for (const std::string& name : reading.unknown_variables) {
      complain(described_, file_ + ": there is no variable '" + name + "'");
    }
    if (!reading.unknown_variables.empty()) return exit_status::WRONG_USE;
    std::optional<rehearsal> rehearsed = rehearse(reading.file);
    if (!rehearsed) return complain_of_rehearsal();
    seen = std::move(*rehearsed);
    return seen.is_good() ? exit_status::GOOD : exit_status::REFUSED;
  }

  // Returns whether the report could be written.
  bool report(const rehearsal& seen, exit_status status, std::string_view why) const {
    std::fputs(seen.errors.c_str(), stderr);
    if (!options_.json) print_findings(seen);
    const bool shows_plan = options_.plan && status == exit_status::GOOD;
    const std::string text = options_.json ? answers_json(file_, seen, status, why)
                             : shows_plan  ? plan_text(seen.plan)
                                           : "";
    const bool written =
        std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    if (!written) complain(described_, std::string("the report: ") + std::strerror(errno));
    return written;
  }

  void print_findings(const rehearsal& seen) const {
    std::fputs(findings_text(file_, seen.findings).c_str(), stderr);
  }

  exit_status complain_of_file() const {
    complain(described_, file_ + ": " + std::strerror(errno));
    return exit_status::WRONG_USE;
  }

  exit_status complain_of_rehearsal() const {
    complain(described_, std::string("no rehearsal: ") + std::strerror(errno));
    return exit_status::WRONG_USE;
  }

  const command& described_;
  const answers_options& options_;
  std::string file_;
};

}  // namespace

exit_status run_answers(int count, char** arguments) {
  set_up_process();
  static answers_options options;  // a run that is recorded does not come back
  static const command described = described_command(options);
  const auto parsed = parse_command_line(described, count, arguments);
  if (const exit_status* ended = std::get_if<exit_status>(&parsed)) return *ended;
  const auto& operands = std::get<std::vector<std::string>>(parsed);
  if (operands.size() == 2) {
    static const answers_command named(described, options, operands[1]);
    if (operands[0] == "record") return named.record();
    if (operands[0] == "template") return named.make_template();
    if (operands[0] == "check") return named.check();
    if (operands[0] == "play") return named.play();
  }
  complain(described, "wants one of record, template, check and play, and a file");
  return exit_status::WRONG_USE;
}

}  // namespace morvane
