#include "lint/sense.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "lint/misnamed.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

bool is_described(const distributed_product& product) {
  return product.description.outcome == read_outcome::DONE;
}

// The levels before the end mark: those that the description gives.
std::vector<int> required_levels(const product& record) {
  std::vector<int> levels;
  for (const needed_patch& needed : record.needed_patches) {
    if (needed.level < 0) break;
    levels.push_back(needed.level);
  }
  return levels;
}

// What a distribution says.
class sense_checks {
 public:
  sense_checks(const distribution& looked_at, finding_list& findings)
      : distribution_(looked_at), findings_(findings) {}

  void check() {
    check_number_of_products();
    check_messages_there();
    for (const distributed_product& product : distribution_.products) {
      check_files(product);
      if (!is_described(product)) continue;
      check_same(product);
      for (const int level : required_levels(product.description.record)) {
        check_level(product, level);
      }
    }
  }

 private:
  void check_number_of_products() {
    std::size_t count = 0;
    for (const distributed_product& product : distribution_.products) {
      if (!product.archive || ++count <= TABLE_SIZE) continue;
      findings_.add("products-too-many", *product.archive, WHOLE_FILE,
                    "the program's table holds 50 products: from this one on they are left out");
      return;
    }
  }

  void check_messages_there() {
    const string meant = misnamed_messages(distribution_.files);
    const bool is_there = std::ranges::binary_search(distribution_.files, "morvane.rsc");
    if (is_there || meant.empty() || distribution_.products.empty()) return;
    findings_.add("messages-misnamed", distribution_.directory + meant, WHOLE_FILE,
                  "there is no morvane.rsc, without which the program does not start, and this "
                  "looks like it: rename it");
  }

  void check_files(const distributed_product& product) {
    if (product.archive && product.description.outcome == read_outcome::MISSING) {
      const string missing = "there is no " + product.description.file;
      const string meant = misnamed_description(product.identifier, distribution_.files);
      if (meant.empty()) {
        findings_.add("description-missing", *product.archive, WHOLE_FILE,
                      missing + ": the product has no name, version, parts or settings");
      } else {
        findings_.add("description-misnamed", distribution_.directory + meant, WHOLE_FILE,
                      missing + ", and this looks like it: rename it");
      }
    }
    if (!product.archive && !product.has_source_tree) {
      const string meant = misnamed_archive(product.identifier, distribution_.files);
      findings_.add("archive-missing", product.description.file, WHOLE_FILE,
                    "there is no " + distribution_.directory + product.identifier +
                        ".tar: the program does not show the product" +
                        (meant.empty() ? "" : "; make it of " + in_quotes(meant)));
    }
  }

  // Compares with the products before it.
  void check_same(const distributed_product& product) {
    const read_description& description = product.description;
    const morvane::product& record = description.record;
    const release& version = record.release;
    const auto same = [&](auto& seen, const auto& key) -> const distributed_product* {
      const auto [before, is_new] = seen.emplace(key, &product);
      return is_new ? nullptr : before->second;
    };
    const auto numbers =
        std::tuple(version.version, version.subversion, version.minorversion, version.patch);
    const distributed_product* twin = same(
        products_,
        std::tuple(string(record.name), string(record.category), string(record.type), numbers));
    const distributed_product* namesake =
        same(names_, std::tuple(string(product_name(record)), numbers));
    if (twin != nullptr) {
      findings_.add("product-twice", description.file, place_of(description, KEYWORD_NAME),
                    "name, version, category and type are those of " + in_quotes(twin->identifier) +
                        ": remove one of the products, or correct its version or patch level");
    } else if (namesake != nullptr) {
      findings_.add("full-name-twice", description.file, place_of(description, KEYWORD_FULL_NAME),
                    "in the list it looks like " + in_quotes(namesake->identifier) +
                        ": change the full name");
    }
    if (record.path.empty()) return;
    const distributed_product* neighbour = same(paths_, string(record.path));
    if (neighbour == nullptr || twin != nullptr) return;
    if (is_patch_beside(record, neighbour->description.record)) return;
    findings_.add("path-twice", description.file, place_of(description, KEYWORD_PATH),
                  "the path " + in_quotes(record.path) + " is also proposed for " +
                      in_quotes(neighbour->identifier) + ": give each product its own");
  }

  // Tells whether one is a patch of the other, or wants to be: what is wrong then is said
  // otherwise.
  static bool is_patch_beside(const morvane::product& a, const morvane::product& b) {
    const bool patch = !required_levels(a).empty() || !required_levels(b).empty();
    return are_levels_of_one(a, b) || (patch && a.name == b.name);
  }

  // Returns why the product is not the level that a patch requires, in the rest of a sentence.
  static string difference(const distributed_product& patch, const distributed_product& other) {
    const morvane::product& a = patch.description.record;
    const morvane::product& b = other.description.record;
    const auto differs = [](string_view what, string_view one, string_view two) {
      return "has the " + string(what) + " " + in_quotes(two) + ", and the patch " + in_quotes(one);
    };
    if (!other.archive && !other.has_source_tree) return "has no archive";
    if (a.full_name != b.full_name) return differs("full name", a.full_name, b.full_name);
    if (a.category != b.category) return differs("category", a.category, b.category);
    if (a.type != b.type) return differs("type", a.type, b.type);
    return differs("version", version_numbers(a.release), version_numbers(b.release));
  }

  // Looks for the level that a patch requires.
  void check_level(const distributed_product& patch, int level) {
    const read_description& description = patch.description;
    const morvane::product& record = description.record;
    const place_in_file place = place_of(description, KEYWORD_REQUIRED_PATCHES);
    if (level == record.release.patch) return;  // said of the description by itself
    const distributed_product* nearest = nullptr;
    for (const distributed_product& other : distribution_.products) {
      if (&other == &patch || !is_described(other)) continue;
      const morvane::product& found = other.description.record;
      if (found.name == record.name && found.release.patch == level) nearest = &other;
      if (found.release.patch != level || !are_levels_of_one(record, found)) continue;
      if (!other.archive && !other.has_source_tree) continue;
      // As the names of the archives sort.
      if (other.identifier + ".tar" > patch.identifier + ".tar") {
        findings_.add("patch-first", description.file, WHOLE_FILE,
                      "the patch is listed before " + in_quotes(other.identifier) +
                          ", on which it builds: name the archives in their order");
      }
      if (found.path != record.path) {
        findings_.add("patch-path", description.file, place_of(description, KEYWORD_PATH),
                      "the patch proposes " + in_quotes(record.path) + ", and " +
                          in_quotes(other.identifier) + ", over which it goes, " +
                          in_quotes(found.path) + ": propose the same");
      }
      return;
    }
    findings_.add("patch-unmet", description.file, place,
                  "level " + std::to_string(level) + " is not in the distribution" +
                      (nearest == nullptr ? string()
                                          : ": " + in_quotes(nearest->identifier) + " " +
                                                difference(patch, *nearest)) +
                      "; only where it is installed already can the patch build on it");
  }

  const distribution& distribution_;
  finding_list& findings_;
  using four_numbers = std::tuple<int, int, int, int>;
  std::map<std::tuple<string, string, string, four_numbers>, const distributed_product*> products_;
  std::map<std::tuple<string, four_numbers>, const distributed_product*> names_;
  std::map<string, const distributed_product*> paths_;
};

}  // namespace

place_in_file place_of(const read_description& description, message_number keyword) {
  place_in_file place = WHOLE_FILE;
  for (const located_entry& entry : description.entries) {
    if (entry.keyword == keyword) place = entry.place;
  }
  return place;
}

bool are_levels_of_one(const product& a, const product& b) {
  release original = a.release;
  original.patch = b.release.patch;
  return a.name == b.name && a.full_name == b.full_name && a.category == b.category &&
         a.type == b.type && original == b.release && a.release != b.release;
}

void check_own_sense(const read_description& description, finding_list& findings) {
  const product& record = description.record;
  const release& version = record.release;
  if (version.version == 0 && version.subversion == 0) {
    findings.add("version-missing", description.file, place_of(description, KEYWORD_VERSION),
                 "version 0.0 is shown as unknown: give the product a version");
  }
  if (std::ranges::count(required_levels(record), version.patch) > 0) {
    findings.add("patch-of-itself", description.file,
                 place_of(description, KEYWORD_REQUIRED_PATCHES),
                 "level " + std::to_string(version.patch) +
                     " is the product's own, which it cannot require: leave it out of the list");
  }
  if (version.patch > 0 && required_levels(record).empty()) {
    findings.add("patch-alone", description.file, place_of(description, KEYWORD_PATCH),
                 "a patch that requires no level is installed without what it goes over: where it "
                 "is not the whole product, add RequiredPatches");
  }
  for (std::size_t i = 0; i < TARGETS && record.target_dep[i] != nullptr; ++i) {
    const target_dep& part = *record.target_dep[i];
    if (part.ask || part.re_ask) continue;
    findings.add("part-never-again", description.file, description.parts[i].place,
                 "part " + in_quotes(part.target) +
                     " is left as it is when the product is configured again: add AskAgain if it " +
                     "is to be made again");
  }
}

void check_common_sense(const distribution& looked_at, finding_list& findings) {
  sense_checks(looked_at, findings).check();
}

}  // namespace morvane
