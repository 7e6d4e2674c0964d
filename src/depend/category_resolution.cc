#include "depend/category_resolution.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/rescan.h"
#include "console/printer.h"
#include "console/question.h"
#include "depend/confirmation.h"
#include "depend/installed_version.h"
#include "messages/table.h"
#include "platform/diagnostic.h"
#include "settings/path.h"
#include "text/format.h"
#include "version/version.h"

namespace morvane {

namespace {

// What the supplier must be, by the type alternative chosen. Without alternatives every type will
// do, in every version and without files.
struct requirement {
  std::string_view category;
  std::optional<std::string_view> type;
  release version;
  std::string_view proposed_directory;
  std::vector<std::string_view> files;
};

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
    const requirement wanted = required();
    if (!offer_from_table(wanted)) search_directory(wanted);
    print("\n");
  }

  bool settled() const { return category_.product != nullptr; }

 private:
  // Asks for a directory and offers what is described there, else what the operator says is there.
  void search_directory(const requirement& wanted) {
    const chosen_path directory = ask_for_directory(wanted);
    const scanned_slots scanned = read_all_descr_files(table_, directory.path);
    const bool refused = directory.exists && offer_from_directory(wanted, directory.path, scanned);
    if (settled()) return;
    give_back(scanned);
    if (refused) return;
    if (scanned.first == TABLE_SIZE) {
      diagnose(fill("%s: More than %d product entries, array overflow",
                    {PROGRAM_NAME, int{TABLE_SIZE}}));
      return;
    }
    add_discovered(wanted, directory, table_[static_cast<std::size_t>(scanned.first)]);
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
      if (!answer) return;
      for (std::size_t i = 0; i < types.size(); ++i) {
        if (types[i]->type != *answer) continue;
        category_.type_num = static_cast<int>(i);
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

  requirement required() const {
    requirement wanted;
    wanted.category = category_.category;
    const type_dep* type = chosen_alternative(category_);
    if (type == nullptr) return wanted;
    wanted.type = type->type.view();
    wanted.version = type->release;
    wanted.proposed_directory = type->std_path;
    wanted.files = required_files(*type);
    return wanted;
  }

  // Tells whether `candidate` will be on the host and meets the requirement for certain. The files
  // of a product that is installed in this run are not there yet.
  bool qualifies(const product& candidate, const requirement& wanted) const {
    if (!on_host_after_run(candidate)) return false;
    if (check_version(&candidate, wanted.category, wanted.type, wanted.version) !=
        version_check::SATISFIED) {
      return false;
    }
    return !already_installed(candidate) || missing_files(candidate.path, wanted.files).empty();
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

  chosen_path ask_for_directory(const requirement& wanted) {
    question asked = about(DIRECTORY_QUESTION);
    asked.text = fill("\n%s '%s' %s",
                      {r[DIRECTORY_QUESTION], category_.category, r[DIRECTORY_QUESTION_END]});
    asked.proposal = wanted.proposed_directory;
    return get_valid_path(asked, {.insist = target_.need_no_install == 0});
  }

  // Offers the qualifying products of `directory` among the new ones, up to the end of the table,
  // until one is accepted; returns whether one was refused before. The directory is looked at last:
  // a candidate that does not lie there is examined, and may be asked about, all the same.
  bool offer_from_directory(const requirement& wanted, std::string_view directory,
                            const scanned_slots& scanned) {
    bool refused = false;
    for (auto slot = static_cast<std::size_t>(scanned.first); slot < table_.size(); ++slot) {
      product& candidate = table_[slot];
      if (!qualifies(candidate, wanted) || candidate.path != directory) continue;
      if (accept(candidate)) return refused;
      refused = true;
    }
    return refused;
  }

  void give_back(const scanned_slots& scanned) {
    const auto first = table_.begin() + scanned.first;
    std::for_each(first, first + scanned.count,
                  [](product& record) { record.install = product_state::FREE; });
  }

  // Puts the product that the operator says is in `directory` into `slot`, as far as it can be
  // known, and asks whether to take it.
  void add_discovered(const requirement& wanted, const chosen_path& directory, product& slot) {
    init_product(slot);
    slot.category = category_.category;
    slot.type = wanted.type.value_or("");
    slot.path = directory.path;
    slot.full_name = category_.text.view();

    version_check version = version_check::SATISFIED;
    std::vector<std::string_view> missing;
    if (directory.exists) {
      version = look_up_version(wanted, slot);
      if (is_acceptable(version)) missing = missing_files(directory.path, wanted.files);
      if (version != version_check::SATISFIED && version != version_check::TOO_OLD) {
        slot.type = r[TYPE_UNKNOWN];
      }
    } else {
      slot.type = r[TYPE_NOT_ON_HOST];
    }

    if (is_acceptable(version) && missing.empty()) {
      take_if(product_accept(record_, target_.target, slot), slot, product_state::INSTALLED);
    } else {
      explain_mismatch(wanted, slot, version, missing);
      question asked = about(ACCEPT_MISMATCH);
      asked.text = r[ACCEPT_MISMATCH];
      asked.candidate = &slot;
      asked.directory = directory.path;
      take_if(choose_y_or_n(asked), slot, product_state::ACCEPTED);
    }
  }

  static bool is_acceptable(version_check version) {
    return version == version_check::SATISFIED || version == version_check::UNKNOWN;
  }

  // Stores the installed version in `slot` and returns how it compares. The comparison looks the
  // version up once more, as for any product without an identifier, with all its questions.
  static version_check look_up_version(const requirement& wanted, product& slot) {
    slot.release = get_version(nullptr, slot.path, wanted.category, wanted.type);
    return check_version(&slot, wanted.category, wanted.type, wanted.version);
  }

  void take_if(bool accepted, product& slot, product_state state) {
    slot.install = accepted ? state : product_state::FREE;
    if (accepted) category_.product = &slot;
  }

  void explain_mismatch(const requirement& wanted, const product& slot, version_check version,
                        const std::vector<std::string_view>& missing) {
    print(fill("\n%s '%s' %s\n",
               {r[MISMATCH_HEADING], category_.category, r[DEPENDENCY_CATEGORY_END]}));
    print(fill("\t%s\n", {category_.text}));
    print(fill("\tdirectory : %s\n", {slot.path}));
    print(fill("\ttype      : %s\n", {slot.type}));
    print(version_line(slot));
    print(fill("%s\n", {r[MISMATCH_REASONS]}));
    if (!is_acceptable(version)) {
      print(fill("\t%s %s\n", {r[MISMATCH_VERSION], version_numbers(wanted.version)}));
    }
    if (!missing.empty()) {
      print(fill("\t%s\n\t\t", {r[MISMATCH_FILES]}));
      for (const std::string_view file : missing) print(fill(" %s", {file}));
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
