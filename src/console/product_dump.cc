#include "console/product_dump.h"

#include <array>
#include <charconv>
#include <cstdint>

#include "console/printer.h"
#include "text/format.h"

namespace morvane {

namespace {

constexpr std::string_view RULE =
    "----------------------------------------------------------------\n";

void put(std::string_view format, std::initializer_list<argument> arguments) {
  print(fill(format, arguments));
}

// Returns as much of an address as an int holds.
std::string address(const void* record) {
  const auto low = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(record));
  std::array<char, 2 * sizeof(low)> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), low, 16);
  return std::string(digits.data(), end.ptr);
}

int state_code(product_state state) {
  return static_cast<int>(state);
}

void print_type(std::string_view indices, const type_dep& type) {
  put("\t\ttype_dep [%s] : %x\n", {indices, address(&type)});
  put("\t\t\ttype        : %s\n", {type.type});
  put("\t\t\tversion     : %d\n", {type.release.version});
  put("\t\t\tsubversion  : %d\n", {type.release.subversion});
  put("\t\t\tminorversion: %d\n", {type.release.minorversion});
  put("\t\t\tpatch       : %d\n", {type.release.patch});
  put("\t\t\tstd_path    : %s\n", {type.std_path});
  print("\t\t\tfile_dep    :");
  for (const long_text& file : type.file_dep) {
    if (file) put(" %s", {file});
  }
  print("\n");
}

void print_category(const std::string& indices, const category_dep& category) {
  put("\tcategory_dep [%s] : %x\n", {indices, address(&category)});
  if (const product* supplier = category.product; supplier != nullptr) {
    put("\t\tproduct->name    : %s\n", {supplier->name});
    put("\t\t       ->install : %d\n", {state_code(supplier->install)});
    put("\t\t       ->id      : %s\n", {supplier->id});
  } else {
    put("\t\tproduct  : %x\n", {address(nullptr)});
  }
  put("\t\tcategory : %s\n", {category.category});
  put("\t\ttext     : %s\n", {category.text});
  put("\t\ttype_num : %s\n",
      {category.type_num ? std::to_string(*category.type_num) : std::string("-1")});
  for (std::size_t y = 0; y < TYPES; ++y) {
    const type_dep* type = category.type_dep[y].get();
    if (type != nullptr) print_type(indices + "][" + std::to_string(y), *type);
  }
}

void print_target(const std::string& index, const target_dep& target) {
  put("target_dep [%s]   : %x\n", {index, address(&target)});
  put("\ttarget         : %s\n", {target.target});
  put("\tinstall        : %d\n", {static_cast<int>(target.install)});
  put("\tneed_no_install: %d\n", {target.need_no_install});
  put("\task            : %s\n", {target.ask});
  put("\tre_ask         : %s\n", {target.re_ask});
  put("\tfix_owner      : %s\n", {target.fix_owner});
  put("\tfix_group      : %s\n", {target.fix_group});
  for (std::size_t c = 0; c < CATEGORIES; ++c) {
    const category_dep* category = target.category_dep[c].get();
    if (category != nullptr) print_category(index + "][" + std::to_string(c), *category);
  }
}

void print_patches(const product& record) {
  print("\nneeded_patches (needed_patch_product):\n");
  for (std::size_t k = 0; k < PATCHES && record.needed_patches[k].level >= 0; ++k) {
    const auto& [level, supplier] = record.needed_patches[k];
    put("needed_patches[%d] : %d\n", {k, level});
    if (supplier == nullptr) continue;
    put("\tproduct->name    : %s\n", {supplier->name});
    put("\t       ->install : %d\n", {state_code(supplier->install)});
    put("\t       ->id      : %s\n", {supplier->id});
  }
}

void print_names(std::string_view title, const std::array<name_text, FIXED_NAMES>& names) {
  print(title);
  for (const name_text& name : names) put(" %s", {name});
  print("\n");
}

void print_settings(const product& record) {
  put("\npath_valid       : %d\n", {static_cast<int>(record.settled.path)});
  put("path             : %s\n", {record.path});
  put("path_info        : %s\n", {record.path_info});
  put("path_env_var     : %s\n", {record.path_env_var});
  put("owner_valid      : %d\n", {int{record.settled.owner}});
  put("owner            : %s\n", {record.owner});
  put("owner_info       : %s\n", {record.owner_info});
  print_names("fix_owner        :", record.fix_owner);
  put("homedir          : %s\n", {record.homedir});
  put("group_valid      : %d\n", {int{record.settled.group}});
  put("group            : %s\n", {record.group});
  put("group_info       : %s\n", {record.group_info});
  print_names("fix_group        :", record.fix_group);
  put("other_access_valid: %d\n", {int{record.settled.access}});
  put("other_access     : %d\n", {int{record.other_access}});
  put("other_access_info: %s\n", {record.other_access_info});
  put("needed_tools     : %s\n", {record.needed_tools});
}

}  // namespace

void print_product(const product& record) {
  print(RULE);
  put("install       : %d\n", {state_code(record.install)});
  put("id            : %s\n", {record.id});
  put("descr_avail   : %d\n", {record.descr_avail});
  put("name          : %s\n", {record.name});
  put("full_name     : %s\n", {record.full_name});
  put("version       : %d\n", {record.release.version});
  put("subversion    : %d\n", {record.release.subversion});
  put("minorversion  : %d\n", {record.release.minorversion});
  put("patch         : %d\n", {record.release.patch});
  put("category      : %s\n", {record.category});
  put("type          : %s\n", {record.type});
  put("abstract      : %s\n", {record.abstract});
  put("hardware      : %s\n", {record.hardware});
  for (std::size_t t = 0; t < TARGETS; ++t) {
    const target_dep* target = record.target_dep[t].get();
    if (target != nullptr) print_target(std::to_string(t), *target);
  }
  print_patches(record);
  print_settings(record);
  print(RULE);
}

}  // namespace morvane
