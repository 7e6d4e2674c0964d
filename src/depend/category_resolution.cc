#include "depend/category_resolution.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

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
  const std::array<long_text, FILES>* files = nullptr;
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

  // Returns the number of type alternatives.
  std::size_t alternatives() const {
    const auto& types = category_.type_dep;
    return static_cast<std::size_t>(std::find(types.begin(), types.end(), nullptr) - types.begin());
  }

  const type_dep& chosen_type() const {
    return *category_.type_dep[static_cast<std::size_t>(category_.type_num)];
  }

  // Asks for the type where there is a choice.
  void choose_type() {
    if (alternatives() == 1) category_.type_num = 0;
    if (alternatives() <= 1) return;
    for (;;) {
      const std::optional<std::string> answer = ask(type_question());
      if (!answer) return;
      for (std::size_t i = 0; i < alternatives(); ++i) {
        if (category_.type_dep[i]->type != *answer) continue;
        category_.type_num = static_cast<int>(i);
        return;
      }
    }
  }

  question type_question() const {
    question asked = about(TYPE_CHOICE);
    asked.text = fill("\n%s '%s' %s '%s'.\n",
                      {r[TYPE_CHOICE], category_.category, r[TYPE_CHOICE_END], record_.name});
    for (std::size_t i = 0; i < alternatives(); ++i) {
      asked.text += fill(i == 0 ? "%s" : ", %s", {category_.type_dep[i]->type});
    }
    asked.text += fill(" : (%s) ", {chosen_type().type});
    asked.proposal = chosen_type().type;
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
    if (alternatives() == 0) return wanted;
    wanted.type = chosen_type().type.view();
    wanted.version = chosen_type().release;
    wanted.proposed_directory = chosen_type().std_path;
    wanted.files = &chosen_type().file_dep;
    return wanted;
  }

  file_check check_required_files(const requirement& wanted, std::string_view directory) const {
    return wanted.files == nullptr ? file_check() : check_files(directory, *wanted.files);
  }

  // Tells whether `candidate` will be on the host and meets the requirement for certain. The files
  // of a product that is installed in this run are not there yet.
  bool qualifies(const product& candidate, const requirement& wanted) const {
    if (!on_host_after_run(candidate)) return false;
    if (check_version(&candidate, wanted.category, wanted.type, wanted.version) !=
        version_check::SATISFIED) {
      return false;
    }
    return !already_installed(candidate) ||
           check_required_files(wanted, candidate.path).missing == 0;
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
    file_check files;
    if (directory.exists) {
      version = look_up_version(wanted, slot);
      if (is_acceptable(version)) files = check_required_files(wanted, directory.path);
      if (version != version_check::SATISFIED && version != version_check::TOO_OLD) {
        slot.type = r[TYPE_UNKNOWN];
      }
    } else {
      slot.type = r[TYPE_NOT_ON_HOST];
    }

    if (is_acceptable(version) && files.missing == 0) {
      take_if(product_accept(record_, target_.target, slot), slot, product_state::INSTALLED);
    } else {
      explain_mismatch(wanted, slot, version, files);
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
                        const file_check& files) {
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
    if (files.missing != 0) {
      print(fill("\t%s\n\t\t", {r[MISMATCH_FILES]}));
      for (std::size_t i = 0; i < FILES; ++i) {
        if (files.states[i] == file_state::MISSING) print(fill(" %s", {(*wanted.files)[i]}));
      }
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
