#include "verify/save.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
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

  exit_status save(const std::vector<std::string>& identifiers) {
    const auto makefile = read_makefile();
    if (!makefile) return exit_status::WRONG_USE;
    for (const std::string& id : identifiers) {
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
    exit_status status = exit_status::GOOD;
    for (const product_facts& facts : makefile->products) {
      const bool wanted =
          identifiers.empty() || std::ranges::find(identifiers, facts.id) != identifiers.end();
      if (wanted) status = std::max(status, save(facts));
    }
    return status;
  }

 private:
  std::optional<install_makefile> read_makefile() const {
    const descriptor file = open_for_reading(MAKEFILE);
    const auto text = file.is_open() ? read_rest(file) : std::nullopt;
    if (!text) {
      complain(described_, std::string(MAKEFILE) + ": " + std::strerror(errno));
      return std::nullopt;
    }
    auto reading = read_install_makefile(*text);
    if (const auto* line = std::get_if<std::size_t>(&reading)) {
      complain(described_, std::string(MAKEFILE) + ":" + std::to_string(*line) +
                               ": this is not what the configurator writes");
      return std::nullopt;
    }
    return std::move(std::get<install_makefile>(reading));
  }

  exit_status save(const product_facts& facts) const {
    const receipt_store store = load_receipts(registry_, {facts.path + "/."});
    const auto same = std::ranges::find_if(store.receipts, [&](const stored_receipt& each) {
      return each.content.id == facts.id && each.content.directory == normal_path(facts.path) &&
             each.trusted;
    });
    const std::string name = printable(facts.id) + ": ";
    if (same != store.receipts.end()) {
      complain(described_, name + "has a receipt already, " + printable(same->file));
      return exit_status::GOOD;
    }
    auto made = receipt_afterwards(facts, store);
    if (const auto* refusal = std::get_if<std::string>(&made)) {
      complain(described_, name + "no receipt is made: " + printable(*refusal));
      return exit_status::WRONG_USE;
    }
    return keep(std::get<receipt>(made));
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
    }
    return exit_status::GOOD;
  }

  const command& described_;
  const std::string& registry_;
};

}  // namespace

exit_status save_receipts(const command& described, const std::string& registry,
                          const std::vector<std::string>& identifiers) {
  return saver(described, registry).save(identifiers);
}

}  // namespace morvane
