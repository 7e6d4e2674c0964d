#include "installed/originals.h"

#include <algorithm>
#include <optional>

#include "catalogue/product_files.h"
#include "depend/patch_match.h"
#include "distribution/distribution.h"
#include "receipt/receipt_store.h"
#include "tree/directory.h"

namespace morvane {

namespace {

std::vector<read_description> descriptions_below(const std::string& directory) {
  const auto names = names_in(open_directory(directory));
  std::vector<read_description> read;
  for (const std::string& name : names.value_or(std::vector<std::string>())) {
    if (!name.ends_with(DESCRIPTION_ENDING)) continue;
    const std::string id = name.substr(0, name.size() - DESCRIPTION_ENDING.size());
    if (!id.empty()) read.push_back(load_description(directory, id));
  }
  return read;
}

}  // namespace

std::vector<std::string> originals_of(const std::string& directory, const std::string& id) {
  const std::string described = directory + "/" + std::string(INSTALL_DIRECTORY);
  const std::vector<read_description> all = descriptions_below(described);
  const auto patch =
      std::ranges::find_if(all, [&](const read_description& each) { return each.record.id == id; });
  std::vector<std::string> originals;
  if (patch == all.end()) return originals;
  for (const needed_patch& needed : patch->record.needed_patches) {
    if (needed.level < 0) break;
    const read_description* best = nullptr;
    std::optional<match_level> best_level;
    for (const read_description& candidate : all) {
      if (candidate.record.id == id) continue;
      const auto level = match_patch(patch->record, candidate.record, needed.level);
      if (!level || (best_level && *best_level <= *level)) continue;
      best = &candidate;
      best_level = level;
    }
    if (best != nullptr) originals.emplace_back(best->record.id.view());
  }
  return originals;
}

}  // namespace morvane
