#include "depend/patch_match.h"

namespace morvane {

std::optional<match_level> match_patch(const product& record, const product& candidate, int patch) {
  release wanted = record.release;
  wanted.patch = patch;
  if (candidate.release != wanted) return std::nullopt;
  const bool name = candidate.name == record.name;
  const bool full_name = candidate.full_name == record.full_name;
  const bool kind = candidate.category == record.category && candidate.type == record.type;
  if (name && full_name && kind) return match_level::NAMES_AND_KIND;
  if (name && kind) return match_level::NAME_AND_KIND;
  if (name && full_name) return match_level::NAMES;
  if (kind) return match_level::KIND;
  if (candidate.id == record.id) return match_level::IDENTIFIER;
  if (name) return match_level::NAME;
  return std::nullopt;
}

bool is_taken_silently(match_level level) {
  return level <= match_level::NAME_AND_KIND;
}

}  // namespace morvane
