#include "lint/archives.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <iterator>
#include <string>
#include <vector>

#include "archive/archive_reader.h"
#include "lint/archived_files.h"
#include "lint/checked_archive.h"
#include "lint/part_checks.h"
#include "lint/sense.h"
#include "text/white_space.h"
#include "text/words.h"

namespace morvane {

namespace {

using std::string;
using std::string_view;

// Used up by each installation.

constexpr std::size_t LISTED_AHEAD = 3;

// What is kept of an archive while the others are looked at: no more than its names.
struct archived_product {
  const distributed_product* product;
  archived_files files;
  bool readable = false;
};

// Checks the archives of a distribution.
class archive_checks {
 public:
  archive_checks(const distribution& looked_at, finding_list& findings)
      : distribution_(looked_at), findings_(findings) {}

  void check() {
    check_each();
    check_shared_files();
    for (const archived_product& archived : archived_) check_needed_files(*archived.product);
  }

 private:
  void add(check_id id, const distributed_product& product, const string& text) {
    findings_.add(id, *product.archive, WHOLE_FILE, text);
  }

  // tar lists the next archives while one is looked at: it takes most of the time.
  void check_each() {
    std::vector<const distributed_product*> products;
    for (const distributed_product& product : distribution_.products) {
      if (product.archive) products.push_back(&product);
    }
    std::deque<tar_listing> listings;
    std::size_t listed = 0;
    for (const distributed_product* product : products) {
      while (listed < products.size() && listings.size() <= LISTED_AHEAD) {
        listings.emplace_back(*products[listed++]->archive);
      }
      check_archive(*product, listings.front());
      listings.pop_front();
    }
  }

  void check_archive(const distributed_product& product, tar_listing& listing) {
    const archive_content content =
        read_checked_archive(product.identifier, *product.archive, listing, findings_);
    archived_product& archived =
        archived_.emplace_back(archived_product{&product, {}, !content.fault});
    for (const archive_member& member : content.members) {
      const bool is_named = member.kind == member_kind::FILE ||
                            member.kind == member_kind::HARD_LINK ||
                            member.kind == member_kind::LINK;
      if (is_named) archived.files.insert(joined_name(parts_of_name(member.name)));
    }
    if (!content.fault) check_parts(product, content, archived.files, findings_);
  }

  // Products that propose one path, levels of one product left out.
  void check_shared_files() {
    for (std::size_t i = 0; i < archived_.size(); ++i) {
      const product& record = archived_[i].product->description.record;
      if (record.path.empty()) continue;
      for (std::size_t k = 0; k < i; ++k) {
        const product& other = archived_[k].product->description.record;
        if (other.path == record.path && !are_levels_of_one(record, other)) {
          check_shared(archived_[k], archived_[i]);
        }
      }
    }
  }

  void check_shared(const archived_product& one, const archived_product& other) {
    std::vector<string> shared;
    std::ranges::set_intersection(one.files, other.files, std::back_inserter(shared));
    std::erase(shared, PRODUCT_MAKEFILE);
    if (shared.empty()) return;
    add("files-shared", *other.product,
        in_quotes(shared[0]) +
            (shared.size() > 1 ? " and " + std::to_string(shared.size() - 1) + " more are"
                               : " is") +
            " also in " + *one.product->archive + ", and both products propose " +
            in_quotes(other.product->description.record.path) + ": the later one replaces it");
  }

  void check_needed_files(const distributed_product& product) {
    string category;
    string type;
    for (const located_entry& entry : product.description.entries) {
      if (entry.keyword == KEYWORD_NEEDS_CATEGORY) category = entry.value;
      if (entry.keyword == KEYWORD_NEEDS_TYPE) type = entry.value;
      if (entry.keyword != KEYWORD_NEEDS_FILES) continue;
      for (const string_view file : split_words(entry.value, WHITE_SPACE)) {
        if (file.starts_with('/') || can_have(category, type, file)) continue;
        findings_.add("needed-file-missing", product.description.file, entry.place,
                      in_quotes(file) + " is in no archive of a product of category " +
                          in_quotes(category) + " and type " + in_quotes(type) +
                          ", none of which has parts that could make it: correct the name");
      }
    }
  }

  // Tells whether a product of that category and type holds the file or may make it, or there is
  // none, of which another check tells.
  bool can_have(string_view category, string_view type, string_view file) const {
    bool some = false;
    for (const archived_product& archived : archived_) {
      const product& record = archived.product->description.record;
      if (record.category != category || record.type != type) continue;
      some = true;
      const bool may_make_it = !archived.readable || record.target_dep[0] != nullptr;
      if (may_make_it || is_there(archived.files, joined_name(parts_of_name(file)))) return true;
    }
    return !some;
  }

  const distribution& distribution_;
  finding_list& findings_;
  std::vector<archived_product> archived_;
};

}  // namespace

void check_archives(const distribution& looked_at, finding_list& findings) {
  archive_checks(looked_at, findings).check();
}

}  // namespace morvane
