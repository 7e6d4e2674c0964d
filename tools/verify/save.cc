#include "verify/save.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <set>
#include <utility>
#include <variant>

#include "distribution/distribution.h"
#include "install_makefile/install_makefile.h"
#include "installed/selection.h"
#include "platform/file.h"
#include "receipt/receipt_store.h"
#include "report/finding.h"
#include "tree/directory.h"
#include "verify/afterwards.h"

namespace morvane {

namespace {

constexpr const char* MAKEFILE = "install.mk";

// Keeps receipts, one product at a time.
class saver {
 public:
  saver(const command& described, const std::string& registry)
      : described_(described), registry_(registry) {}

  exit_status save(const std::vector<std::string>& ids) {
    const auto makefile = read_makefile();
    if (!makefile) return exit_status::WRONG_USE;
    for (const std::string& id : ids) {
      if (std::ranges::find(makefile->products, id, &product_facts::id) ==
          makefile->products.end()) {
        complain(described_, std::string(MAKEFILE) + " does not install '" + printable(id) + "'");
        return exit_status::WRONG_USE;
      }
    }
    if (!choose_messages(".")) {
      complain(described_, "there is no message file, for the keywords of descriptions");
      return exit_status::WRONG_USE;
    }
    return save(*makefile, ids);
  }

 private:
  // All that is installed is told of before any receipt is kept: products share directories.
  exit_status save(const install_makefile& makefile, const std::vector<std::string>& ids) {
    std::vector<std::string> directories;
    for (const product_facts& facts : makefile.products) directories.push_back(facts.path + "/");
    store_ = load_receipts(registry_, directories);
    const std::size_t earlier = store_.receipts.size();
    exit_status status = exit_status::GOOD;
    for (const product_facts& facts : makefile.products) {
      const bool wanted = ids.empty() || std::ranges::find(ids, facts.id) != ids.end();
      status = std::max(status, tell_of(facts, wanted));
    }
    put_in_order(earlier);
    for (std::size_t i = earlier; i < store_.receipts.size(); ++i) {
      receipt& made = store_.receipts[i].content;
      if (!wanted_.contains(made.id)) continue;
      if (add_surroundings(made, store_)) {
        status = std::max(status, keep(made));
      } else {
        complain(described_, printable(made.id) + ": no receipt is made: its directory " +
                                 printable(made.directory) + ": " + std::strerror(errno));
        status = std::max(status, exit_status::WRONG_USE);
      }
    }
    return status;
  }

  std::optional<install_makefile> read_makefile() const {
    const descriptor file = open_for_reading(MAKEFILE);
    const auto text = file.is_open() ? read_rest(file) : std::nullopt;
    if (!text) {
      complain(described_, std::string(MAKEFILE) + ": " + std::strerror(errno));
      return std::nullopt;
    }
    const auto reading = read_install_makefile(*text);
    if (const auto* line = std::get_if<std::size_t>(&reading)) {
      complain(described_, std::string(MAKEFILE) + ":" + std::to_string(*line) +
                               ": this is not what the configurator writes");
      return std::nullopt;
    }
    return std::get<install_makefile>(reading);
  }

  // Adds the receipt of a product that has none to the store.
  exit_status tell_of(const product_facts& facts, bool wanted) {
    const auto same = std::ranges::find_if(store_.receipts, [&](const stored_receipt& each) {
      return each.content.id == facts.id && each.content.directory == normal_path(facts.path) &&
             each.trusted;
    });
    const std::string name = printable(facts.id) + ": ";
    if (same != store_.receipts.end()) {
      if (wanted) complain(described_, name + "has a receipt already, " + printable(same->file));
      return exit_status::GOOD;
    }
    auto made = receipt_afterwards(facts);
    if (const auto* refusal = std::get_if<std::string>(&made)) {
      if (!wanted) return exit_status::GOOD;
      complain(described_, name + "no receipt is made: " + printable(*refusal));
      return exit_status::WRONG_USE;
    }
    stored_receipt stored;
    stored.content = std::move(std::get<receipt>(made));
    if (wanted) wanted_.insert(facts.id);
    store_.receipts.push_back(std::move(stored));
    return exit_status::GOOD;
  }

  // Make installed them one behind the other, whatever the times of their files tell now.
  void put_in_order(std::size_t first) {
    for (std::size_t i = store_.receipts.size(); i-- > first + 1;) {
      const receipt& later = store_.receipts[i].content;
      receipt& sooner = store_.receipts[i - 1].content;
      if (later.installed > 0) sooner.installed = std::min(sooner.installed, later.installed - 1);
    }
  }

  exit_status keep(receipt& made) const {
    const std::string name = printable(made.id) + ": ";
    const receipt_places places = keep_receipt(made, registry_);
    if (places.beside != 0) {
      complain(described_, name + "the receipt cannot be written beside the product: " +
                               std::strerror(places.beside));
      return exit_status::FAILED;
    }
    if (places.registry != 0) {
      complain(described_, name + "the receipt lies beside the product alone, not in " +
                               printable(registry_) + ": " + std::strerror(places.registry));
      if (geteuid() == 0) return exit_status::FAILED;  // an ordinary user may not write there
    }
    return exit_status::GOOD;
  }

  const command& described_;
  const std::string& registry_;
  receipt_store store_;
  std::set<std::string> wanted_;  // identifiers of products whose receipt is to be kept
};

}  // namespace

exit_status save_receipts(const command& described, const std::string& registry,
                          const std::vector<std::string>& ids) {
  return saver(described, registry).save(ids);
}

}  // namespace morvane
