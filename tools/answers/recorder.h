// Listening to a run: which questions were asked, and what the run made of the answers.
#ifndef MORVANE_ANSWERS_RECORDER_H
#define MORVANE_ANSWERS_RECORDER_H

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "answer_file/answer_writer.h"
#include "catalogue/product.h"
#include "console/question.h"

namespace morvane {

// Notes what is asked, and passes the answers through as they are. What was answered is read off
// the product records at the end: how often an answer was mended, and in which words it was given,
// leaves no trace.
class recorder {
 public:
  explicit recorder(answer_source source) : source_(std::move(source)) {}

  // Returns the next byte of the answer to `asked`.
  int next(const question& asked);

  // Returns the results of a run that was answered to its end.
  std::vector<written_section> results() const;

  // Returns the first name for which there would have to be two values; empty where there is none.
  std::string conflict() const;

 private:
  // What was asked about a product since its settings were last asked for.
  struct asked_names {
    std::set<std::string, std::less<>> names;
    bool asked_to_change = false;
  };

  void begin(const question& asked);
  void hear(const question& asked, char c);
  written_section general_section() const;
  written_section product_section(const product& record, const asked_names& asked) const;

  answer_source source_;
  std::map<const product*, asked_names> products_;
  std::set<std::string_view> general_;
  std::set<std::string, std::less<>> created_;
  std::string line_;  // of the answer that is being given
  bool in_answer_ = false;
  bool links_asked_before_ = false;  // directly
  std::optional<std::string> links_file_;
  bool links_file_differs_ = false;
};

}  // namespace morvane

#endif  // MORVANE_ANSWERS_RECORDER_H
