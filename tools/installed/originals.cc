#include "installed/originals.h"

#include <algorithm>
#include <optional>

#include "catalogue/description_parser.h"
#include "catalogue/product_files.h"
#include "depend/patch_match.h"
#include "distribution/distribution.h"
#include "receipt/receipt_store.h"
#include "tree/directory.h"

namespace morvane {

namespace {

// Whoever owns the product's directory can put anything there, and change it meanwhile.
std::vector<product> described_in(const std::string& product_directory) {
  const descriptor opened = open_directory(product_directory);
  const descriptor install =
      opened.is_open() ? open_below(opened, INSTALL_DIRECTORY) : descriptor();
  const auto names = install.is_open() ? names_in(install) : std::nullopt;
  std::vector<product> described;
  for (const std::string& name : names.value_or(std::vector<std::string>())) {
    if (!name.ends_with(DESCRIPTION_ENDING)) continue;
    const std::string id = name.substr(0, name.size() - DESCRIPTION_ENDING.size());
    const descriptor file = open_file_in(install, name);
    const auto text = file.is_open() ? read_rest(file, LONGEST_DESCRIPTION) : std::nullopt;
    if (!id.empty() && text) read_product_in(*text, id, described.emplace_back());
  }
  return described;
}

}  // namespace

std::vector<std::string> originals_of(const std::string& directory, const std::string& id) {
  const std::vector<product> all = described_in(directory);
  const auto patch = std::ranges::find_if(all, [&](const product& each) { return each.id == id; });
  std::vector<std::string> originals;
  if (patch == all.end()) return originals;
  for (const needed_patch& needed : patch->needed_patches) {
    if (needed.level < 0) break;
    const product* best = nullptr;
    std::optional<match_level> best_level;
    for (const product& candidate : all) {
      if (candidate.id == id) continue;
      const auto level = match_patch(*patch, candidate, needed.level);
      if (!level || (best_level && *best_level <= *level)) continue;
      best = &candidate;
      best_level = level;
    }
    if (best != nullptr) originals.emplace_back(best->id.view());
  }
  return originals;
}

}  // namespace morvane
