#include "settings/path.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "console/printer.h"
#include "console/question.h"
#include "messages/table.h"
#include "platform/effects.h"
#include "platform/identity.h"
#include "settings/refusal.h"
#include "text/format.h"
#include "text/wrap.h"

namespace morvane {

namespace {

// Asks `about`, the proposal being shown behind its text; returns the answer, the proposal where it
// is empty.
std::string ask_for_path(const question& about) {
  question asked = about;
  const std::string text = about.proposal.empty()
                               ? fill("%s:\n", {about.text})
                               : fill("%s:\n(%s) ", {about.text, about.proposal});
  // Here already: a question shows its text as it stands.
  asked.text = wrap(text, screen_width(), "", "");
  return ask(asked).value_or(std::string(about.proposal));
}

// Returns `path`, which begins with "~", with the home directory of its user in place of "~" and
// the user's name; nothing where the host does not know the user.
std::optional<std::string> expand_home(std::string_view path) {
  const std::size_t slash = std::min(path.find('/'), path.size());
  const std::string_view name = path.substr(1, slash - 1);
  const std::optional<user> owner = name.empty() ? real_user() : find_user(name);
  if (!owner) return std::nullopt;
  const std::string_view rest = path.substr(slash);
  return rest.size() > 1 ? owner->home + std::string(rest) : owner->home;
}

// Returns the answer as an absolute, normalised path that fits its field; nothing, once the
// operator was told why, where it cannot be one.
std::optional<std::string> to_path(const std::string& answer) {
  std::string path = answer;
  if (answer.starts_with('~')) {
    const std::optional<std::string> expanded = expand_home(answer);
    if (!expanded) {
      print(fill("%s '%s' (%s).\n", {r[PATH_FAILED], answer, r[USER_OF_PATH_UNKNOWN]}));
      return std::nullopt;
    }
    path = normalise_path(*expanded);
  } else if (answer.starts_with('/')) {
    path = normalise_path(answer);
  } else {
    print(fill("\n%s\n", {r[PATH_NOT_ABSOLUTE]}));
    return std::nullopt;
  }

  const bool special = refuse_special_characters("path", path);
  if (special || path.size() > path_text::LONGEST) {
    print(fill("\n%s\n", {r[PATH_NOT_ABSOLUTE]}));
    return std::nullopt;
  }
  return path;
}

// Tells of a directory that is not there, or creates it where the operator wants that.
void handle_missing(const std::string& path, const question& about, bool offer_to_create) {
  if (!offer_to_create) {
    print(fill("%s '%s'\n", {r[PATH_MISSING], path}));
    return;
  }
  const question asked = {
      .number = CREATE_DIRECTORY,
      .text = fill("%s '%s'   %s ", {r[PATH_MISSING], path, r[CREATE_DIRECTORY]}),
      .product = about.product,
      .directory = path};
  if (!choose_y_or_n(asked)) return;
  if (on_host().exists(path)) return;  // somebody has created it meanwhile: it is theirs
  if (!on_host().make_directory(path)) print(fill("%s '%s'.\n", {r[PATH_FAILED], path}));
}

// Tells whether the directory can be written, and the operator where it cannot.
bool is_writable(const std::string& path) {
  if (on_host().may_create_in(path)) return true;
  print(fill(PATH_NOT_WRITABLE, path));
  return false;
}

// Returns the product whose directory `record` shares: the first settled one that supplies one of
// its needed patches.
const product* find_companion(const product& record) {
  for (const auto& [level, supplier] : record.needed_patches) {
    // Unlike where needs are settled, the end mark ends the list (see `needed_patches`).
    if (level < 0) break;
    const bool settled = supplier != nullptr && on_host_after_run(*supplier) &&
                         supplier->settled.path != path_state::UNSETTLED;
    if (settled) return supplier;
  }
  return nullptr;
}

}  // namespace

std::string normalise_path(std::string_view path) {
  std::string result;
  for (const char c : path) {
    if (c != '/' || !result.ends_with('/')) result += c;
  }
  if (result.size() > 1 && result.ends_with('/')) result.pop_back();
  return result;
}

chosen_path get_valid_path(const question& about, const path_demands& demands) {
  for (;;) {
    const std::optional<std::string> path = to_path(ask_for_path(about));
    if (!path) continue;
    if (!on_host().exists(*path)) handle_missing(*path, about, demands.offer_to_create);
    const bool there = on_host().exists(*path);
    if (!there && demands.insist) continue;
    // A user's home directory may be anything.
    if (!path->starts_with('/')) continue;
    if (demands.writable && !is_writable(*path)) continue;
    return {*path, there};
  }
}

void get_product_path(product* record) {
  if (refuse_invalid_product(record, "get_product_path")) return;
  if (record->settled.path != path_state::UNSETTLED) return;
  if (const product* companion = find_companion(*record)) {
    record->path = companion->path;
    record->settled.path = path_state::CHOSEN;
    return;
  }
  print("\n");
  if (!record->path_env_var.empty()) {
    const char* value = std::getenv(record->path_env_var.c_str());
    // An empty value counts: it takes the proposal away.
    if (value != nullptr) record->path = value;
  }
  if (record->path_info) {
    print("\n");
    print_with_cr(*record->path_info, screen_width());
  }
  const question asked = {.number = PATH_QUESTION,
                          .text = fill("\n%s '%s'!\n%s", {r[PATH_QUESTION_HEADING],
                                                          product_name(*record), r[PATH_QUESTION]}),
                          .product = record,
                          .proposal = record->path};
  record->path =
      get_valid_path(asked, {.offer_to_create = true, .writable = true, .insist = true}).path;
  record->settled.path = path_state::CHOSEN;
}

}  // namespace morvane
