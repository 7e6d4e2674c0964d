// The product record, the product table and the texts that show a product.
#ifndef MORVANE_CATALOGUE_PRODUCT_H
#define MORVANE_CATALOGUE_PRODUCT_H

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/release.h"
#include "text/text.h"

namespace morvane {

inline constexpr std::size_t TABLE_SIZE = 50;   // products known in one run
inline constexpr std::size_t TARGETS = 12;      // targets of a product
inline constexpr std::size_t CATEGORIES = 10;   // category dependencies of a target
inline constexpr std::size_t TYPES = 10;        // type alternatives of a category dependency
inline constexpr std::size_t FILES = 20;        // files of a type alternative, end mark included
inline constexpr std::size_t PATCHES = 20;      // needed patches of a product, end mark included
inline constexpr std::size_t FIXED_NAMES = 10;  // fixed owners or groups of a product

using name_text = text<50>;
using title_text = text<80>;
using path_text = text<128>;
using long_text = std::optional<std::string>;  // absent differs from empty

// What is known of a product. The order of the codes carries meaning; ask the functions below.
enum class product_state {
  FREE = -1,                          // the slot holds no product
  INITIALISED = 0,                    // being read or probed, not classified yet
  AVAILABLE = 1,                      // its archive lies in the distribution
  SELECTED = 2,                       // selected for installation
  CONFIGURED = 3,                     // selected, and its settings are accepted
  ACCEPTED = 9,                       // installed, accepted although a dependency's check failed
  INSTALLED = 10,                     // its description lies among the installed products
  SELECTED_FOR_RECONFIGURATION = 11,  // installed, and selected to be configured again
};

enum class target_state {
  NOT_WANTED = 1,
  WANTED = 2,
  RESOLVED = 3,  // wanted, and all its category dependencies are settled
};

// Values of `product::descr_avail`; a description may give others.
inline constexpr int NO_DESCRIPTION = 0;
inline constexpr int FIXED_LISTS = 1;
inline constexpr int DESCRIBED = 2;

enum class path_state {
  UNSETTLED = 0,
  CHOSEN = 1,   // in this run
  SCANNED = 2,  // the products installed there are in the table
};

struct product;

// An acceptable type of the product that a category dependency needs, and its minimum version.
struct type_dep {
  name_text type;
  morvane::release release;
  path_text std_path;                     // proposed directory of such a product
  std::array<long_text, FILES> file_dep;  // ask `required_files`
};

// A dependency of a target on a product of a category.
struct category_dep {
  morvane::product* product = nullptr;  // the supplier once settled; points into the product table
  name_text category;
  title_text text;
  std::optional<std::size_t> type_num;  // of the chosen alternative; absent while there are none
  std::array<std::unique_ptr<morvane::type_dep>, TYPES> type_dep;  // ask `alternatives`
};

// An install target: a part of a product that its own makefile installs.
struct target_dep {
  target_state install = target_state::NOT_WANTED;
  int need_no_install = 0;  // non-zero: its suppliers need not be on this host
  long_text ask;
  long_text re_ask;
  title_text target;
  std::array<std::unique_ptr<morvane::category_dep>, CATEGORIES> category_dep;
  long_text fix_owner;
  long_text fix_group;
};

// A patch level of the product itself that it needs, 0 for the original, and who supplies it.
struct needed_patch {
  int level = -1;               // below 0: none
  product* supplier = nullptr;  // once settled; points into the product table

  bool operator==(const needed_patch&) const = default;
};

// Which settings of a product need not be asked for any more.
struct settled_settings {
  path_state path = path_state::UNSETTLED;
  bool owner = false;
  bool group = false;
  bool access = false;
};

struct product {
  product_state install = product_state::FREE;
  int descr_avail = NO_DESCRIPTION;
  name_text id;
  name_text name;
  title_text full_name;
  morvane::release release;
  name_text category;
  name_text type;
  long_text abstract;
  long_text hardware;
  std::array<std::unique_ptr<morvane::target_dep>, TARGETS> target_dep;
  // An earlier, longer list leaves its levels behind the end mark -1: they are settled as well.
  std::array<needed_patch, PATCHES> needed_patches;
  settled_settings settled;
  path_text path;
  long_text path_info;
  path_text path_env_var;
  name_text owner;
  long_text owner_info;
  path_text homedir;  // of the owner
  std::array<name_text, FIXED_NAMES> fix_owner;
  name_text group;
  long_text group_info;
  std::array<name_text, FIXED_NAMES> fix_group;
  bool other_access = true;  // other users keep access
  long_text other_access_info;
  long_text needed_tools;
};

// All products of a run. Used slots stay contiguous from slot 0.
using product_table = std::array<product, TABLE_SIZE>;

// Gives every member of `record` its first value; its state is INITIALISED.
void init_product(product& record);

// Returns the lowest free slot of `table`, or TABLE_SIZE where there is none.
std::size_t get_next_free_product(const product_table& table);

bool is_free(const product& record);

// Tells whether the product will be on the host after this run.
bool on_host_after_run(const product& record);

// Tells whether the product was on the host before this run.
bool already_installed(const product& record);

// Tells whether the operator has selected the product, to be installed or configured again.
bool is_selected(const product& record);

// Takes the selection of `record`, which is selected, back.
void unselect(product& record);

// Tells whether this run writes settings and makefile rules for the product.
bool is_ordered(const product& record);

// Returns the name to show in headings and files: the full name, else the name, else the
// identifier. The result is a view of `record`.
std::string_view product_name(const product& record);

// Returns the version to show, such as "version 2.1.3, patch 4".
std::string product_version(const product& record);

using type_alternatives = std::span<const std::unique_ptr<type_dep>>;

// Returns the type alternatives of `category`: those before the first empty slot.
type_alternatives alternatives(const category_dep& category);

// Returns the chosen alternative, or null where there are none.
const type_dep* chosen_alternative(const category_dep& category);

// Returns the files that an installed product of this type must have, as views of `type`. What an
// earlier, longer list left behind the end mark, an absent entry, is required as well.
std::vector<std::string_view> required_files(const type_dep& type);

// Returns the target of `record` in `slot` where it is set and resolved, else null.
const target_dep* resolved_target(const product& record, std::size_t slot);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_PRODUCT_H
