#include "answers/player.h"

#include <algorithm>

#include "answer_file/escaping.h"
#include "answers/question_name.h"
#include "messages/table.h"
#include "platform/identity.h"
#include "text/format.h"
#include "text/words.h"

namespace morvane {

namespace {

enum answer_letter : std::size_t { YES, NO, QUIT };

// Bounds a rehearsal in which an answer is refused in a way that is not known here.
constexpr std::size_t MOST_QUESTIONS = 100000;

// The version of what the links tool installed is looked up for every candidate, with its question:
// it may come again directly without having been refused.
constexpr std::size_t MOST_LINKS_QUESTIONS = 2 * TABLE_SIZE;

// Directories that are there on every host, for answers that are missing.
constexpr std::string_view OPEN_TO_ALL = "/tmp";
constexpr std::string_view ROOT = "/";

constexpr std::string_view TAKES_YES_OR_NO = "takes 'yes' or 'no'";

char to_lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Enter means yes; the letter of another language might mean something else.
std::optional<std::string> line_of(bool yes) {
  const std::string_view letters = r[ANSWER_LETTERS];
  if (yes) return "";
  return letters.size() > NO ? std::optional(std::string(1, letters[NO])) : std::nullopt;
}

// Returns why the dialogue cannot take `value`, whatever it asks; empty where it can.
std::string_view unanswerable(std::string_view value) {
  const std::string_view letters = r[ANSWER_LETTERS];
  if (value.size() > LONGEST_ANSWER) return "is longer than the program reads";
  if (value.size() == 1 && letters.size() > QUIT &&
      to_lower(value.front()) == to_lower(letters[QUIT])) {
    return "is the letter that quits";
  }
  return "";
}

}  // namespace

answer_source bytes_of(line_source lines) {
  return [lines = std::move(lines), rest = std::string()](const question& asked) mutable -> int {
    if (rest.empty()) {
      std::optional<std::string> line = lines(asked);
      if (!line) return -1;
      rest = *line + "\n";
    }
    const char c = rest.front();
    rest.erase(0, 1);
    return static_cast<unsigned char>(c);
  };
}

std::optional<std::string> player::reply(const question& asked) {
  if (stopped_ || ++questions_ > MOST_QUESTIONS) return std::nullopt;
  begin(asked);
  return answer_of(asked);
}

bool player::lacks_proposal(std::string_view section, std::string_view name) const {
  return std::ranges::any_of(findings_, [&](const answer_finding& found) {
    return found.trouble == answer_trouble::MISSING && found.section == section &&
           found.name == name && found.proposal.empty();
  });
}

void player::begin(const question& asked) {
  section_ = asked.product == nullptr ? "" : section_title(*asked.product);
  name_ = answer_name(asked).value_or("");
  // That a directory is to be created is part of the question for it.
  if (asked.number == CREATE_DIRECTORY) return;
  const std::string identity = identity_of(asked);
  repetition_ = identity == identity_ ? repetition_ + 1 : 0;
  identity_ = identity;
}

player::reply_line player::answer_of(const question& asked) {
  if (asked.number == ACCESS_QUESTION.number) return give_yes_or_no();
  switch (asked.number) {
    case HOW_TO_SELECT_1:
      return select_products();
    case CONFIRM_SELECTION:
      return confirm_selection();
    case GO_ON_ALL_THE_SAME:
      return demand_yes(asked, "ends the run: the host is not suitable");
    case QUIT_WITHOUT_TOOLS:
      demand_yes(asked, "ends the run: tools are missing");
      return line_of(false);
    case GO_ON_WITHOUT_TOOLS:
      return demand_yes(asked, "ends the run: tools are missing");
    case UNSELECT_PRODUCT:
      return line_of(!is_yes(name_));
    case KEEP_PRODUCT:
      return give_yes_or_no();
    case PATH_QUESTION:
      return give_directory(asked);
    case CREATE_DIRECTORY:
      return demand_yes(asked, fill("is no answer: '%s' is missing", {asked.directory}));
    case OWNER_QUESTION:
      return give_text(asked, real_user_name());
    case GROUP_QUESTION:
      return give_text(asked, effective_group_name());
    case KEYWORD_ASK:
    case KEYWORD_ASK_AGAIN:
      return give_part();
    case TYPE_CHOICE:
      return give_text(asked, "");
    case ACCEPT_CANDIDATE:
      return judge_candidate(asked, supplier_of(*asked.candidate));
    case ACCEPT_MISMATCH:
      return judge_candidate(asked, {"", std::string(asked.directory), true});
    case DIRECTORY_QUESTION:
      return search_directory(asked);
    case LEAVE_PATCH_OPEN:
      return leave_patch_open();
    case LINKS_FILE_QUESTION:
      return give_text(asked, "");
    case CHANGE_SETTINGS:
      return line_of(wants_to_change());
    case LAST_QUESTION:
      return finish();
    default:
      return stop();
  }
}

player::reply_line player::select_products() {
  if (repetition_ > 0) return stop();
  if (find_answer(file_, "", PRODUCTS) == nullptr &&
      find_answer(file_, "", RECONFIGURE) == nullptr) {
    note_missing(PRODUCTS, "");
  }
  return numbers_of(PRODUCTS, product_state::AVAILABLE) +
         numbers_of(RECONFIGURE, product_state::INSTALLED);
}

// Returns the numbers of the products that the line `list` names, each of which must be in `state`.
std::string player::numbers_of(std::string_view list, product_state state) {
  const answer* given = take(list);
  std::string numbers;
  if (given == nullptr) return numbers;
  for (const std::string_view word : split_words(given->value, " \t")) {
    const std::string id = unescape(word).value_or("");
    const auto found = std::ranges::find_if(
        table_, [&](const product& record) { return record.id == id && record.install == state; });
    const bool named_before =
        found != table_.end() && std::ranges::find(wanted_, &*found) != wanted_.end();
    if (found == table_.end()) {
      selected_.push_back((state == product_state::AVAILABLE ? "" : "installed ") +
                          std::string(word));
      note(answer_trouble::REFUSED, list, fill("there is no product '%s'", {id}));
    } else if (named_before) {
      note(answer_trouble::REFUSED, list, fill("names '%s' twice", {id}));
    } else {
      wanted_.push_back(&*found);
      selected_.push_back(section_title(*found));
      numbers += std::to_string(found - table_.begin() + 1) + " ";
    }
  }
  return numbers;
}

player::reply_line player::confirm_selection() {
  if (repetition_ > 0) return stop();
  // Where nothing is offered, nobody has asked for them.
  const bool asked_for = !wanted_.empty() || !selected_.empty();
  if (!asked_for) {
    numbers_of(PRODUCTS, product_state::AVAILABLE);
    numbers_of(RECONFIGURE, product_state::INSTALLED);
  }
  for (const product* record : wanted_) {
    if (is_selected(*record)) continue;
    note(answer_trouble::REFUSED, PRODUCTS,
         fill("'%s' cannot be selected: its files would belong to others", {record->id}));
  }
  return line_of(true);
}

// Gives the answer, else what is proposed, else `fallback`.
player::reply_line player::give_text(const question& asked, const std::string& fallback) {
  const answer* given = take(name_);
  const std::string value = given == nullptr ? "" : unescape(given->value).value_or("");
  const std::string_view why = unanswerable(value);
  const bool usable = given != nullptr && why.empty();
  const std::size_t repeated =
      usable && asked.number == LINKS_FILE_QUESTION
          ? std::max(repetition_, MOST_LINKS_QUESTIONS) - MOST_LINKS_QUESTIONS
          : repetition_;
  std::vector<std::string> choices;
  if (usable) choices.push_back(value);
  if (!asked.proposal.empty()) choices.emplace_back("");
  if (!fallback.empty()) choices.push_back(fallback);

  if (given == nullptr) {
    note_missing(name_, escape_value(asked.proposal));
  } else if (!usable) {
    note_refused(name_, why);
  } else if (repeated > 0) {
    note_refused(name_, "is refused by the program");
  }
  return repeated < choices.size() ? std::optional(choices[repeated]) : stop();
}

player::reply_line player::give_yes_or_no() {
  return repetition_ == 0 ? line_of(is_yes(name_)) : stop();
}

// A yes is asked for again where the operator may not give files to the owner of the part.
player::reply_line player::give_part() {
  const bool yes = is_yes(name_);
  if (repetition_ == 0) return line_of(yes);
  if (repetition_ > 1) return stop();
  note_refused(name_, "is refused by the program");
  return line_of(false);
}

player::reply_line player::demand_yes(const question& asked, std::string_view why) {
  if (!is_yes(name_)) note_refused(name_, why);
  return repetition_ > 0 && asked.number != CREATE_DIRECTORY ? stop() : line_of(true);
}

player::reply_line player::give_directory(const question& asked) {
  reply_line line = give_text(asked, std::string(OPEN_TO_ALL));
  // It may be there already, today or when this is played again.
  if (find_answer(file_, section_, CREATE) != nullptr) is_yes(CREATE);
  return line;
}

player::supplier_search& player::search_of_asked() {
  const auto [found, is_new] = searches_.try_emplace({section_, name_});
  supplier_search& search = found->second;
  if (!is_new) return search;
  const answer* given = take(name_);
  search.missing = given == nullptr;
  if (given == nullptr || given->value == LEFT_OPEN) return search;
  search.wanted = read_supplier(given->value);
  if (!search.wanted) {
    note_refused(name_,
                 "is neither 'ID', 'ID in /directory', '/directory' nor '/directory anyway'");
  }
  return search;
}

player::reply_line player::judge_candidate(const question& asked, const supplier& offered) {
  supplier_search& search = search_of_asked();
  const answer* given = find_answer(file_, section_, name_);
  const bool open = asked.patch && given != nullptr && given->value == LEFT_OPEN;
  if (open || (search.wanted && *search.wanted != offered)) return line_of(false);
  if (search.missing) note_missing(name_, search.by_proposal ? supplier_text(offered) : "");
  searches_.erase({section_, name_});
  return line_of(true);
}

player::reply_line player::search_directory(const question& asked) {
  supplier_search& search = search_of_asked();
  if (search.wanted) {
    if (search.directories++ == 0 && !search.wanted->directory.empty()) {
      return search.wanted->directory;
    }
    note_refused(name_, "is not among what the program offers");
    search.wanted.reset();
    search.directories = 0;
  }
  ++search.directories;
  if (!asked.proposal.empty() && search.directories == 1) return "";
  search.by_proposal = false;
  // Twice: the proposal may have been refused.
  return search.directories <= 2 ? std::optional(std::string(ROOT)) : stop();
}

player::reply_line player::leave_patch_open() {
  if (repetition_ > 0) return stop();
  const answer* given = take(name_);
  if (given == nullptr) {
    note_missing(name_, std::string(LEFT_OPEN));
  } else if (given->value != LEFT_OPEN) {
    note_refused(name_, "is not among what the program offers");
  }
  return line_of(true);
}

// An answer that no question took so far may belong to one that comes only when the settings are
// asked for again: the directory of a patch, which else is that of its original.
bool player::wants_to_change() {
  const answer_section* section = find_section(file_, section_);
  if (section == nullptr || !changed_.insert(section).second) return false;
  return std::ranges::any_of(section->answers,
                             [&](const answer& each) { return !taken_.contains(&each); });
}

player::reply_line player::finish() {
  if (finished_) return stop();
  finished_ = true;
  for (const answer_section& section : file_.sections) {
    section_ = section.title;
    const bool selected = std::ranges::find(selected_, section.title) != selected_.end();
    const bool asked_about = std::ranges::any_of(
        section.answers, [&](const answer& each) { return taken_.contains(&each); });
    if (!section.title.empty() && !selected && !asked_about) {
      findings_.push_back({.trouble = answer_trouble::LEFT_OVER,
                           .line = section.line,
                           .section = section.title,
                           .text = "no question is about this product"});
      continue;
    }
    if (!section.title.empty() && !asked_about) continue;  // why was said where it is selected
    for (const answer& each : section.answers) {
      if (taken_.contains(&each)) continue;
      note(answer_trouble::LEFT_OVER, each.name, "no question takes this answer");
    }
  }
  return line_of(true);
}

player::reply_line player::stop() {
  stopped_ = true;
  note(answer_trouble::ENDED, name_, "the rehearsal cannot go beyond this question");
  return std::nullopt;
}

// Tells what the answer of that name says; where there is none, or another one, as Enter alone.
bool player::is_yes(std::string_view name) {
  const answer* given = take(name);
  if (given == nullptr) {
    note_missing(name, std::string(YES_VALUE));
  } else if (given->value != YES_VALUE && given->value != NO_VALUE) {
    note(answer_trouble::REFUSED, name, std::string(TAKES_YES_OR_NO));
  }
  return given == nullptr || given->value != NO_VALUE;
}

// Returns the answer of that name in the section of the question, or null.
const answer* player::take(std::string_view name) {
  const answer* given = find_answer(file_, section_, name);
  if (given != nullptr) taken_.insert(given);
  return given;
}

// What is found again is no news.
void player::note(answer_trouble trouble, std::string_view name, std::string text,
                  std::string proposal) {
  const answer* given = find_answer(file_, section_, name);
  const answer_section* section = find_section(file_, section_);
  const std::size_t line_of_section = section == nullptr ? 0 : section->line;
  const bool known = std::ranges::any_of(findings_, [&](const answer_finding& found) {
    return found.trouble == trouble && found.section == section_ && found.name == name &&
           found.text == text;
  });
  if (known) return;
  findings_.push_back({trouble, given == nullptr ? line_of_section : given->line, section_,
                       std::string(name), std::move(text), std::move(proposal)});
}

void player::note_missing(std::string_view name, std::string proposal) {
  note(answer_trouble::MISSING, name, "there is no answer", std::move(proposal));
}

void player::note_refused(std::string_view name, std::string_view why) {
  const answer* given = find_answer(file_, section_, name);
  if (given == nullptr) return;  // it is missing, which was noted
  note(answer_trouble::REFUSED, name, fill("'%s' %s", {given->value, why}));
}

}  // namespace morvane
