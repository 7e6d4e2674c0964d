#include "answers/recording.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "answer_file/answer_writer.h"
#include "answers/child_run.h"
#include "answers/recorder.h"
#include "answers/text_file.h"
#include "command/exit_status.h"
#include "console/leave.h"

namespace morvane {

namespace {

struct recording {
  std::string path;
  std::function<void(std::string_view why)> complain;
  recorder heard{answers_of_operator()};

  // Returns whether the answers could be kept.
  bool keep() const {
    const std::string conflict = heard.conflict();
    if (!conflict.empty()) {
      complain(path + ": not written: there are two answers to " + conflict);
      return false;
    }
    if (put_text_file(path, write_answers(heard.results()))) return true;
    complain(path + ": " + std::strerror(errno));
    return false;
  }
};

}  // namespace

void record_run(const std::string& path,
                const std::function<void(std::string_view why)>& complain) {
  static product_table table;
  static recording kept{path, complain};
  // The program ends itself, wherever it is.
  std::atexit([] {
    if (return_code != 0 || kept.keep()) return;
    std::fflush(nullptr);
    std::_Exit(static_cast<int>(exit_status::FAILED));
  });
  take_answers_from([](const question& asked) { return kept.heard.next(asked); });
  run_program(table);
}

}  // namespace morvane
