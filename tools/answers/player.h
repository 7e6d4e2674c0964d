// Giving the answers of a file to the questions of a run.
#ifndef MORVANE_ANSWERS_PLAYER_H
#define MORVANE_ANSWERS_PLAYER_H

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "answer_file/answer_file.h"
#include "answers/answer_finding.h"
#include "answers/supplier.h"
#include "catalogue/product.h"
#include "console/question.h"

namespace morvane {

// Gives the line that answers a question, without its newline; nothing where there are no more.
using line_source = std::function<std::optional<std::string>(const question& asked)>;

// Returns the source of the bytes of these lines.
answer_source bytes_of(line_source lines);

// Answers the questions of a rehearsal. Where an answer is missing or refused it notes that and
// goes on with the proposal, or with anything that will do: one rehearsal finds all there is. A
// question that comes again directly shows that its answer was refused.
class player {
 public:
  // The products that are answered for stand in `table`, once the run has filled it.
  player(const answer_file& file, const product_table& table) : file_(file), table_(table) {}

  std::optional<std::string> reply(const question& asked);

  // Whether the last question was reached.
  bool finished() const { return finished_; }

  const std::vector<answer_finding>& findings() const { return findings_; }

  // Tells whether the answer was missing and the program had no proposal for it.
  bool lacks_proposal(std::string_view section, std::string_view name) const;

 private:
  // What is known of the search for a supplier, until one is accepted.
  struct supplier_search {
    std::optional<supplier> wanted;  // nothing: whoever is offered
    bool missing = false;
    bool by_proposal = true;
    std::size_t directories = 0;  // that were given
  };

  using reply_line = std::optional<std::string>;

  void begin(const question& asked);
  reply_line answer_of(const question& asked);
  reply_line select_products();
  std::string numbers_of(std::string_view list, product_state state);
  reply_line confirm_selection();
  reply_line give_text(const question& asked, const std::string& fallback);
  reply_line give_yes_or_no();
  reply_line give_part();
  reply_line demand_yes(const question& asked, std::string_view why);
  reply_line give_directory(const question& asked);
  reply_line judge_candidate(const question& asked, const supplier& offered);
  reply_line search_directory(const question& asked);
  reply_line leave_patch_open();
  bool wants_to_change();
  reply_line finish();
  reply_line stop();

  supplier_search& search_of_asked();
  bool is_yes(std::string_view name);
  const answer* take(std::string_view name);
  void note(answer_trouble trouble, std::string_view name, std::string text,
            std::string proposal = "");
  void note_missing(std::string_view name, std::string proposal);
  void note_refused(std::string_view name, std::string_view why);

  const answer_file& file_;
  const product_table& table_;
  std::vector<answer_finding> findings_;
  std::set<const answer*> taken_;
  std::set<const answer_section*> changed_;  // whose settings were asked for again
  std::vector<std::string> selected_;  // titles of the sections of the products that were named
  std::vector<const product*> wanted_;

  // Of the question that was asked last.
  std::string section_;
  std::string name_;
  std::string identity_;
  std::size_t repetition_ = 0;

  std::map<std::pair<std::string, std::string>, supplier_search> searches_;
  std::size_t questions_ = 0;
  bool finished_ = false;
  bool stopped_ = false;
};

}  // namespace morvane

#endif  // MORVANE_ANSWERS_PLAYER_H
