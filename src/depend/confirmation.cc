#include "depend/confirmation.h"

#include "console/printer.h"
#include "console/question.h"
#include "host/rights.h"
#include "messages/table.h"
#include "text/format.h"

namespace morvane {

namespace {

void print_dependency_heading(const product& record, std::string_view target,
                              const product& candidate) {
  print_with_cr(fill("\n%s '%s', %s '%s', %s '%s' %s:\n\n",
                     {r[DEPENDENCY_PRODUCT], record.name, r[DEPENDENCY_TARGET], target,
                      r[CANDIDATE_COULD_BE], candidate.category, r[DEPENDENCY_CATEGORY_END]}),
                screen_width());
}

// The quote and full stop stand twice, at the end of the heading and before the next line.
void print_patch_heading(const product& record, const product& candidate) {
  std::string heading = fill(
      "\n%s '%s %s' %s '%s ",
      {r[DEPENDENCY_PRODUCT], record.name, product_version(record), r[PATCH_NEEDS], record.name});
  heading += candidate.release.patch > 0 ? fill("Patch %d", {candidate.release.patch}) : "Original";
  heading += "'.\n";
  print_with_cr(heading, screen_width());
  print(fill("'.\n%s :\n\n", {r[PATCH_CANDIDATE]}));
}

void print_candidate_name(const product& candidate) {
  const std::string_view shown = product_name(candidate);
  // What was taken as it is, for a need without a text, has no name at all.
  if (shown.empty()) {
    print(fill("\t%s %s\n", {candidate.category, r[DEPENDENCY_CATEGORY_END]}));
  } else {
    print(fill("\t%s\n", {shown}));
  }
}

// Each of the two is checked as one name, though output/left_files finds several in it. An empty
// entry is not the same as none: it is checked as an empty name.
bool may_give_files(const target_dep& target) {
  return check_chown_rights(target.fix_owner, target.fix_group);
}

void print_no_rights(const target_dep& target) {
  print(fill("%s '%s' !\n", {r[NO_RIGHTS_FOR_TARGET], target.target}));
}

question target_question(message_number number, std::string_view text, const product& record,
                         const target_dep& target) {
  return {.number = number, .text = std::string(text), .product = &record, .part = target.target};
}

// Asks about `target` until the answer can be followed. After a failure of the rights only a no
// ends the questions: operators count on a refused target not slipping in by repetition.
void ask_for_new_target(const product& record, target_dep& target) {
  const question asked = target_question(KEYWORD_ASK, *target.ask, record, target);
  bool ok = true;
  do {
    if (!choose_y_or_n(asked)) {
      target.install = target_state::NOT_WANTED;
      ok = true;
    } else if (may_give_files(target)) {
      target.install = target_state::WANTED;
    } else {
      print_no_rights(target);
      ok = false;
    }
  } while (!ok);
}

}  // namespace

bool product_accept(const product& record, std::optional<std::string_view> target,
                    const product& candidate) {
  if (target) {
    print_dependency_heading(record, *target, candidate);
  } else {
    print_patch_heading(record, candidate);
  }
  print_candidate_name(candidate);
  // The path of a product that is only selected is not settled yet.
  if (candidate.install != product_state::SELECTED) {
    print(fill("\tdirectory : %s\n", {candidate.path}));
  }
  // The heading of a need has named it.
  if (!target) print(fill("\tcategory  : %s\n", {candidate.category}));
  print(fill("\ttype      : %s\n", {candidate.type}));
  print(version_line(candidate));
  if (candidate.install == product_state::SELECTED || is_ordered(candidate)) {
    print(fill("%s\n", {r[CANDIDATE_IN_THIS_RUN]}));
  }
  return choose_y_or_n({.number = ACCEPT_CANDIDATE,
                        .text = std::string(r[ACCEPT_CANDIDATE]),
                        .product = &record,
                        .part = target.value_or(""),
                        .category = candidate.category,
                        .candidate = &candidate,
                        .directory = candidate.path,
                        .patch = target ? std::nullopt : std::optional(candidate.release.patch)});
}

bool new_installation(const product& record, target_dep& target) {
  if (target.ask) {
    ask_for_new_target(record, target);
    return true;
  }
  print(fill("\n%s '%s' ...\n", {r[TARGET_INSTALLED], target.target}));
  if (!may_give_files(target)) return false;
  target.install = target_state::WANTED;
  return true;
}

void re_installation(const product& record, target_dep& target) {
  const long_text& text = target.re_ask ? target.re_ask : target.ask;
  const question asked = target_question(KEYWORD_ASK_AGAIN, text.value_or(""), record, target);
  // Not as with a new target: a later yes that can be followed ends the questions.
  for (;;) {
    const bool wanted = text && choose_y_or_n(asked);
    target.install = wanted ? target_state::WANTED : target_state::NOT_WANTED;
    if (!wanted || may_give_files(target)) return;
    print_no_rights(target);
  }
}

std::string version_line(const product& record) {
  const release& shown = record.release;
  return fill("\tversion   : %s\n",
              {is_shown_as_unknown(shown) ? "unknown" : version_numbers(shown)});
}

}  // namespace morvane
