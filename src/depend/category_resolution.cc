#include "depend/category_resolution.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "catalogue/rescan.h"
#include "console/printer.h"
#include "console/question.h"
#include "depend/confirmation.h"
#include "depend/installed_version.h"
#include "depend/requirement.h"
#include "messages/table.h"
#include "platform/diagnostic.h"
#include "settings/path.h"
#include "text/format.h"
#include "version/version.h"

namespace morvane {

namespace {

// Walks the operator through one dependency.
class category_dialogue {
 public:
  category_dialogue(const product& record, const target_dep& target, category_dep& category,
                    product_table& table)
      : record_(record), target_(target), category_(category), table_(table) {}

  // Makes one attempt: afterwards the dependency is settled, or the operator has refused what there
  // was, or the table is full.
  void attempt() {
    announce();
    choose_type();
    const requirement wanted = requirement_of(category_.category, chosen_alternative(category_));
    if (!offer_from_table(wanted)) search_directory(wanted);
    print("\n");
  }

  bool settled() const { return category_.product != nullptr; }

 private:
  // Asks for a directory and offers what is described there, else what the operator says is there.
  void search_directory(const requirement& wanted) {
    const chosen_path directory = ask_for_directory();
    const scanned_slots scanned = read_all_descr_files(table_, directory.path);
    const bool refused = directory.exists && offer_from_directory(wanted, directory.path, scanned);
    if (settled()) return;
    // With them goes the mark that the directory was read: another attempt reads it again, unless a
    // product of this run goes there.
    give_back(scanned);
    // The directory as it is stands in only where nothing fitted there, not for what was refused.
    if (refused) return;
    // No slot even for what nothing describes. Without the full stop and the newline of
    // `report_full_table`: morvane(1) explains the two texts apart.
    if (scanned.first == TABLE_SIZE) {
      diagnose(
          fill("%s: More than %d product entries, array overflow", {PROGRAM_NAME, TABLE_SIZE}));
      return;
    }
    add_discovered(wanted, directory, table_[scanned.first]);
  }

  void announce() {
    print("\n");
    print_with_cr(
        fill("%s '%s', %s '%s', %s ", {r[DEPENDENCY_PRODUCT], record_.name, r[DEPENDENCY_TARGET],
                                       target_.target, r[DEPENDENCY_NEEDS]}) +
            fill("%s '%s' %s:\n       %s", {r[DEPENDENCY_CATEGORY], category_.category,
                                            r[DEPENDENCY_CATEGORY_END], category_.text}),
        screen_width());
    print("\n");
  }

  // Asks for the type where there is a choice.
  void choose_type() {
    const type_alternatives types = alternatives(category_);
    if (types.size() == 1) category_.type_num = 0;
    if (types.size() <= 1) return;
    for (;;) {
      const std::optional<std::string> answer = ask(type_question(types));
      // Enter alone: the choice stays, which is the first type until another one was named.
      if (!answer) return;
      for (std::size_t i = 0; i < types.size(); ++i) {
        if (types[i]->type != *answer) continue;
        category_.type_num = i;
        return;
      }
    }
  }

  question type_question(type_alternatives types) const {
    question asked = about(TYPE_CHOICE);
    asked.text = fill("\n%s '%s' %s '%s'.\n",
                      {r[TYPE_CHOICE], category_.category, r[TYPE_CHOICE_END], record_.name});
    for (std::size_t i = 0; i < types.size(); ++i) {
      asked.text += fill(i == 0 ? "%s" : ", %s", {types[i]->type});
    }
    // There is one: a description chooses its first type as it is read.
    asked.proposal = chosen_alternative(category_)->type;
    asked.text += fill(" : (%s) ", {asked.proposal});
    return asked;
  }

  // Returns a question about this dependency, without its text.
  question about(message_number number) const {
    return {.number = number,
            .product = &record_,
            .part = target_.target,
            .category = category_.category};
  }

  // Tells whether `candidate` will be on the host and meets the requirement for certain.
  bool qualifies(const product& candidate, const requirement& wanted) const {
    return on_host_after_run(candidate) &&
           examine(candidate, wanted, in_doubt::REFUSE, get_version).is_met();
  }

  // Asks whether `candidate` is the one; settles the dependency where it is.
  bool accept(product& candidate) {
    if (!product_accept(record_, target_.target, candidate)) return false;
    category_.product = &candidate;
    return true;
  }

  // Offers every qualifying product of the table until one is accepted; returns whether one was.
  // The product itself is among them.
  bool offer_from_table(const requirement& wanted) {
    return std::any_of(table_.begin(), table_.end(), [&](product& candidate) {
      return qualifies(candidate, wanted) && accept(candidate);
    });
  }

  chosen_path ask_for_directory() {
    question asked = about(DIRECTORY_QUESTION);
    asked.text = fill("\n%s '%s' %s",
                      {r[DIRECTORY_QUESTION], category_.category, r[DIRECTORY_QUESTION_END]});
    const type_dep* type = chosen_alternative(category_);
    if (type != nullptr) asked.proposal = type->std_path;
    return get_valid_path(asked, {.insist = target_.need_no_install == 0});
  }

  // Offers the qualifying products of `directory` among the new ones, up to the end of the table,
  // until one is accepted; returns whether one was refused before. The directory is looked at last:
  // a candidate that does not lie there is examined, and may be asked about, all the same.
  bool offer_from_directory(const requirement& wanted, std::string_view directory,
                            const scanned_slots& scanned) {
    bool refused = false;
    for (std::size_t slot = scanned.first; slot < table_.size(); ++slot) {
      product& candidate = table_[slot];
      if (!qualifies(candidate, wanted) || candidate.path != directory) continue;
      if (accept(candidate)) return refused;
      refused = true;
    }
    return refused;
  }

  void give_back(const scanned_slots& scanned) {
    for (product& record : std::span(table_).subspan(scanned.first, scanned.count)) {
      record.install = product_state::FREE;
    }
  }

  // Puts the product that the operator says is in `directory` into `slot`, as far as it can be
  // known, and asks whether to take it.
  void add_discovered(const requirement& wanted, const chosen_path& directory, product& slot) {
    // The identifier stays empty: by that `described_version` knows that nothing describes it.
    init_product(slot);
    slot.install = product_state::INSTALLED;
    slot.category = category_.category;
    slot.type = wanted.type.value_or("");
    slot.path = directory.path;
    // Later questions and the settings file have no other name for it.
    slot.full_name = category_.text.view();

    // As it stands: of a directory that is not on this host nothing can be found wrong.
    verdict found;
    if (directory.exists) {
      found = examine_discovered(wanted, slot);
    } else {
      slot.type = r[TYPE_NOT_ON_HOST];
    }

    if (found.is_met()) {
      take_if(product_accept(record_, target_.target, slot), slot, product_state::INSTALLED);
    } else {
      explain_mismatch(wanted, slot, found);
      question asked = about(ACCEPT_MISMATCH);
      asked.text = r[ACCEPT_MISMATCH];
      asked.candidate = &slot;
      asked.directory = directory.path;
      take_if(choose_y_or_n(asked), slot, product_state::ACCEPTED);
    }
  }

  // Stores the installed version in `slot` and returns how it compares. The comparison looks the
  // version up once more, as for any product without an identifier, with all its questions. An
  // unknown version will do here: mostly nothing describes what is taken like this.
  static verdict examine_discovered(const requirement& wanted, product& slot) {
    slot.release = get_version(nullptr, slot.path, wanted.category, wanted.type);
    verdict found = examine(slot, wanted, in_doubt::ACCEPT, get_version);
    const bool version_known =
        found.version == version_check::SATISFIED || found.version == version_check::TOO_OLD;
    // No need asks for this type, so that the record is not offered where a type is wanted.
    if (!version_known) slot.type = r[TYPE_UNKNOWN];
    return found;
  }

  void take_if(bool accepted, product& slot, product_state state) {
    slot.install = accepted ? state : product_state::FREE;
    if (accepted) category_.product = &slot;
  }

  void explain_mismatch(const requirement& wanted, const product& slot, const verdict& found) {
    print(fill("\n%s '%s' %s\n",
               {r[MISMATCH_HEADING], category_.category, r[DEPENDENCY_CATEGORY_END]}));
    print(fill("\t%s\n", {category_.text}));
    print(fill("\tdirectory : %s\n", {slot.path}));
    print(fill("\ttype      : %s\n", {slot.type}));
    print(version_line(slot));
    print(fill("%s\n", {r[MISMATCH_REASONS]}));
    if (!found.version_will_do) {
      print(fill("\t%s %s\n", {r[MISMATCH_VERSION], version_numbers(wanted.minimum)}));
    }
    if (!found.missing_files.empty()) {
      print(fill("\t%s\n\t\t", {r[MISMATCH_FILES]}));
      for (const std::string_view file : found.missing_files) print(fill(" %s", {file}));
      print("\n");
    }
  }

  const product& record_;
  const target_dep& target_;
  category_dep& category_;
  product_table& table_;
};

}  // namespace

void resolve_category_dep(const product& record, const target_dep& target, category_dep& category,
                          product_table& table) {
  category_dialogue dialogue(record, target, category, table);
  while (!dialogue.settled()) dialogue.attempt();
}

}  // namespace morvane
