#include "lint/names.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "catalogue/product_files.h"
#include "lint/description_fields.h"
#include "messages/table.h"
#include "text/number.h"
#include "text/quoting.h"
#include "text/white_space.h"
#include "text/words.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

constexpr string_view LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

bool consists_of(string_view text, const string& characters) {
  return text.find_first_not_of(characters) == string_view::npos;
}

// Neither make nor a shell finds a meaning in such a name, nor takes it for an option, and "*.tar"
// lists it.
bool is_rule_name(string_view name) {
  return !name.empty() && consists_of(name, string(LETTERS) + string(DIGITS) + "_.+-") &&
         consists_of(name.substr(0, 1), string(LETTERS) + string(DIGITS) + "_");
}

bool is_variable_name(string_view name) {
  return consists_of(name, string(LETTERS) + string(DIGITS) + "_") &&
         consists_of(name.substr(0, 1), string(LETTERS) + "_");
}

// The names of one description.
class name_checks {
 public:
  name_checks(const read_description& description, finding_list& findings)
      : description_(description), findings_(findings) {}

  void check() {
    if (description_.record.name.empty()) {
      add("name-missing", WHOLE_FILE,
          "there is no " + in_quotes(r[KEYWORD_NAME]) +
              ": the headings of parts stay empty; add one");
    }
    for (const located_entry& entry : description_.entries) {
      if (!entry.value.empty()) check_entry(entry);
    }
  }

 private:
  void add(check_id id, const place_in_file& place, string text) {
    findings_.add(id, description_.file, place, std::move(text));
  }

  void check_entry(const located_entry& entry) {
    switch (entry.keyword) {
      case KEYWORD_NAME:
      case KEYWORD_FULL_NAME:
      case KEYWORD_NEEDS_TEXT:
        check_shown_name(entry);
        break;
      case KEYWORD_TARGET:
        check_part(entry);
        break;
      case KEYWORD_NEEDS_CATEGORY:
        check_category(entry);
        break;
      case KEYWORD_PATH:
      case KEYWORD_NEEDS_PATH:
        check_path(entry);
        break;
      case KEYWORD_OWNER:
      case KEYWORD_GROUP:
      case KEYWORD_TARGET_OWNER:
      case KEYWORD_TARGET_GROUP:
        check_owner(entry, entry.value);
        break;
      case KEYWORD_FIXED_OWNERS:
      case KEYWORD_FIXED_GROUPS:
        for (const string_view word : split_words(entry.value, WHITE_SPACE)) {
          check_owner(entry, word);
        }
        break;
      case KEYWORD_PATH_VARIABLE:
        if (!is_variable_name(entry.value)) {
          add("variable-name", entry.place,
              in_quotes(entry.value) +
                  " is no name of an environment variable, so that it is never " +
                  "set: write the name alone, without '$'");
        }
        break;
      default:
        break;
    }
  }

  void check_shown_name(const located_entry& entry) {
    const std::size_t at = entry.value.find_first_of("$#\\\"`");
    if (at == string::npos) return;
    add("name-characters", entry.place,
        in_quotes(r[entry.keyword]) + " holds " + in_quotes(entry.value.substr(at, 1)) +
            ", which make or the shell interprets in install.mk: leave it out");
  }

  void check_part(const located_entry& entry) {
    const string& name = entry.value;
    if (!is_rule_name(name)) {
      add("part-characters", entry.place,
          "part " + in_quotes(name) + " cannot be a target: make or the shell interprets it; use " +
              "letters, digits and _.+-");
    }
    if (std::ranges::find(PRODUCT_RULES, "-" + name) != PRODUCT_RULES.end()) {
      add("part-reserved", entry.place,
          "part " + in_quotes(name) +
              " is named like a rule that install.mk has for each product: " +
              "give it another name, here and in install/Makefile");
    }
    const auto [before, is_new] = parts_.emplace(name, entry.place.line);
    if (!is_new) {
      add("part-repeated", entry.place,
          "a second part " + in_quotes(name) + ", the first is in line " +
              std::to_string(before->second) + ": install.mk gets two rules of one name");
    }
  }

  void check_category(const located_entry& entry) {
    const string& category = entry.value;
    if (category == "PRODUCT") {
      add("category-reserved", entry.place,
          "'PRODUCT' takes the place of the product's own settings, such as PRODUCT_PATH: use "
          "another category");
    }
    if (!is_variable_name(category)) {
      add("category-characters", entry.place,
          "category " + in_quotes(category) + " becomes the beginning of a variable such as " +
              category + "_PATH: use letters, digits and underscores");
    }
    const auto [before, is_new] = categories_.emplace(category, entry.place.line);
    if (!is_new) {
      add("category-repeated", entry.place,
          "category " + in_quotes(category) + " is needed in line " +
              std::to_string(before->second) +
              " already: both write the same variables, and the later ones count for both");
    }
  }

  void check_path(const located_entry& entry) {
    const string& path = entry.value;
    const bool begins_well = path.starts_with('/') || path.starts_with('~');
    if (begins_well && !holds_special_characters(path)) return;
    add("path-refused", entry.place,
        "the path " + in_quotes(path) + " is proposed, and refused when it is taken: " +
            (begins_well ? "it holds a blank or what make or the shell interprets"
                         : "it begins with neither '/' nor '~'"));
  }

  void check_owner(const located_entry& entry, string_view name) {
    if (!holds_special_characters(name)) return;
    add("owner-refused", entry.place,
        in_quotes(name) + " is refused as a user or group: it holds a blank or what make or the " +
            "shell interprets");
  }

  const read_description& description_;
  finding_list& findings_;
  std::map<string, std::size_t> parts_;  // with their lines
  std::map<string, std::size_t> categories_;
};

// For what has no commands in install.mk, make looks for commands of its own: it knows how to make
// what differs in these endings, one from the other, and what SCCS keeps under this prefix.
constexpr std::array<string_view, 3> WITHOUT_COMMANDS = {"", "-new", ".tar"};
constexpr string_view MADE_FROM_EACH_OTHER =
    "a C c cc cpp cpp-out cxx def dvi F f info l ln m mod o out p r S s sh sym tex texi texinfo "
    "txinfo w web y ym";
constexpr string_view KEPT = "s.";

// Returns what make may take `name` for, without its endings and its prefix.
std::vector<string> stems(string_view name) {
  static const std::vector<string_view> endings = split_words(MADE_FROM_EACH_OTHER, " ");
  std::vector<string> found;
  for (string_view stem : {name, name.starts_with(KEPT) ? name.substr(KEPT.size()) : name}) {
    for (;;) {
      const std::size_t dot = stem.rfind('.');
      if (dot == string_view::npos || dot == 0) break;
      if (std::ranges::find(endings, stem.substr(dot + 1)) == endings.end()) break;
      stem = stem.substr(0, dot);
    }
    found.emplace_back(stem);
  }
  return found;
}

string file_of(const distributed_product& product) {
  return product.archive.value_or(product.description.file);
}

// The identifiers of a distribution.
class rule_checks {
 public:
  rule_checks(const distribution& looked_at, finding_list& findings)
      : distribution_(looked_at), findings_(findings) {
    for (const string_view rule : OWN_RULES) {
      for (const string& stem : stems(rule)) taken_.emplace(stem, rule);
    }
    for (const distributed_product& product : looked_at.products) {
      identifiers_.insert(product.identifier);
    }
  }

  void check() {
    for (const distributed_product& product : distribution_.products) {
      check_identifier(product);
      check_made(product);
      check_parts(product);
      check_files(product);
    }
    for (const string_view rule : {"install", "products"}) check_sources(string(rule));
    for (const string& file : distribution_.files) check_hidden(file);
  }

 private:
  void check_identifier(const distributed_product& product) {
    const string& identifier = product.identifier;
    const string file = file_of(product);
    if (!is_rule_name(identifier)) {
      findings_.add("identifier-characters", file, WHOLE_FILE,
                    "the identifier " + in_quotes(identifier) +
                        " cannot name rules in install.mk: use " +
                        "letters, digits and _.+-, and begin with a letter, a digit or _");
    }
    if (identifier.size() > name_text::LONGEST) {
      findings_.add("identifier-too-long", file, WHOLE_FILE,
                    "the identifier has " + std::to_string(identifier.size()) +
                        " bytes, of which the program keeps 49: shorten the file's name");
    }
    if (std::ranges::find(OWN_RULES, identifier) != OWN_RULES.end()) {
      findings_.add("identifier-reserved", file, WHOLE_FILE,
                    "install.mk calls a rule of its own " + in_quotes(identifier) +
                        ": give the product another identifier");
    }
    for (const string_view rule : PRODUCT_RULES) {
      const string name = identifier + string(rule);
      if (!identifiers_.contains(name)) continue;
      findings_.add("identifier-reserved", distribution_.directory + name + ".tar", WHOLE_FILE,
                    "install.mk calls a rule of product " + in_quotes(identifier) + " " +
                        in_quotes(name) + ": give one of the products another identifier");
    }
  }

  // The program lists "*.tar", as a shell does.
  void check_hidden(const string& file) {
    if (!file.starts_with('.') || !file.ends_with(ARCHIVE_ENDING)) return;
    findings_.add("identifier-characters", distribution_.directory + file, WHOLE_FILE,
                  "a hidden file is no product to the program: begin the identifier with a "
                  "letter, a digit or _");
  }

  void check_made(const distributed_product& product) {
    std::map<string, string> names;
    for (const string_view rule : WITHOUT_COMMANDS) {
      const string name = product.identifier + string(rule);
      for (const string& stem : stems(name)) names[stem] = name;
    }
    for (const auto& [stem, name] : names) {
      const auto other = taken_.find(stem);
      if (other == taken_.end() || other->second == name) continue;
      findings_.add("identifier-made", file_of(product), WHOLE_FILE,
                    "make has a rule of its own between " + in_quotes(name) + " and " +
                        in_quotes(other->second) + ": give the product another identifier");
      break;
    }
    for (const auto& [stem, name] : names) taken_[stem] = name;
  }

  void check_parts(const distributed_product& product) {
    for (const located_entry& entry : product.description.entries) {
      if (entry.keyword != KEYWORD_TARGET || entry.value.empty()) continue;
      const string rule = product.identifier + "-" + entry.value;
      const string owner = owner_of(rule, product.identifier);
      if (owner.empty()) continue;
      findings_.add("part-collision", product.description.file, entry.place,
                    "the rule of part " + in_quotes(entry.value) + " is " + in_quotes(rule) +
                        ", as is a rule of product " + in_quotes(owner) +
                        ": rename the part or the product");
    }
  }

  // Returns the other product that has a rule of this name, if any.
  string owner_of(const string& rule, const string& identifier) const {
    if (identifiers_.contains(rule)) return rule;
    for (const string_view ending : PRODUCT_RULES) {
      if (!rule.ends_with(ending)) continue;
      string other = rule.substr(0, rule.size() - ending.size());
      if (other != identifier && identifiers_.contains(other)) return other;
    }
    return "";
  }

  // Files that make takes for the result of a step, or for the source of a rule without commands.
  void check_files(const distributed_product& product) {
    for (const char* step :
         {"-tar", "-inst-dir", "-make", "-permission-old", "-owner-old", "-group-old"}) {
      check_file(product.identifier + step, "make takes the step of this name for done");
    }
    for (const located_entry& entry : product.description.entries) {
      if (entry.keyword != KEYWORD_TARGET) continue;
      check_file(product.identifier + "-" + entry.value, "make takes the part for made");
    }
    check_sources(product.identifier);
    check_sources(product.identifier + "-new");
  }

  void check_sources(const string& rule) {
    for (const string_view ending : SOURCE_ENDINGS) {
      check_file(rule + string(ending), "make compiles it for the rule " + in_quotes(rule));
    }
  }

  void check_file(const string& name, const string& consequence) {
    if (!std::ranges::binary_search(distribution_.files, name)) return;
    findings_.add("file-like-rule", distribution_.directory + name, WHOLE_FILE,
                  consequence + ": remove the file");
  }

  const distribution& distribution_;
  finding_list& findings_;
  std::set<string> identifiers_;
  std::map<string, string> taken_;  // names of rules, by what make may take them for
};

}  // namespace

void check_given_names(const read_description& description, finding_list& findings) {
  name_checks(description, findings).check();
}

void check_rule_names(const distribution& looked_at, finding_list& findings) {
  rule_checks(looked_at, findings).check();
}

}  // namespace morvane
