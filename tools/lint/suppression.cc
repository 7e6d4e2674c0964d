#include "lint/suppression.h"

#include "text/white_space.h"

namespace morvane {

namespace {

std::string_view without_leading_space(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(WHITE_SPACE);
  return begin == std::string_view::npos ? "" : text.substr(begin);
}

}  // namespace

std::string_view allowed_id(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return "";
  const std::string_view id = text.substr(0, colon);
  const bool has_reason = text.find_first_not_of(WHITE_SPACE, colon + 1) != std::string_view::npos;
  const bool is_word = id.find_first_of(WHITE_SPACE) == std::string_view::npos;
  return has_reason && is_word ? id : "";
}

std::optional<allowance> allowance_of_comment(std::string_view comment, const std::string& file,
                                              const place_in_file& place, finding_list& findings) {
  constexpr std::string_view HEAD = "lint:";
  constexpr std::string_view VERB = "allow ";
  std::string_view text = without_leading_space(comment);
  if (!text.starts_with(HEAD)) return std::nullopt;
  text = without_leading_space(text.substr(HEAD.size()));
  const std::string_view id =
      text.starts_with(VERB) ? allowed_id(without_leading_space(text.substr(VERB.size()))) : "";
  if (id.empty()) {
    findings.add("allow-malformed", file, place,
                 "this suppresses nothing: write '# lint: allow ID: REASON'");
    return std::nullopt;
  }
  allowance allowed;
  allowed.id = id;
  allowed.file = file;
  allowed.stands_in = file;
  allowed.place = place;
  return allowed;
}

}  // namespace morvane
