// What many tests set up: product records, programs on PATH, and an operator without rights.
#ifndef MORVANE_TESTS_SUPPORT_RECORDS_H
#define MORVANE_TESTS_SUPPORT_RECORDS_H

#include <grp.h>
#include <pwd.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/product.h"
#include "support/child.h"

namespace morvane {

// Puts a product into the first free slot of `table`.
inline product& add_product(product_table& table, std::string_view id, product_state state) {
  product& record = table.at(get_next_free_product(table));
  init_product(record);
  record.install = state;
  record.id = id;
  record.name = id;
  return record;
}

// Puts a copy of the arguments into the first empty slot of a list of dependency records.
template <typename Record, std::size_t N>
Record& add_to(std::array<std::unique_ptr<Record>, N>& list) {
  std::size_t slot = 0;
  while (list.at(slot) != nullptr) ++slot;
  list[slot] = std::make_unique<Record>();
  return *list[slot];
}

inline target_dep& add_target(product& record, std::string_view target_name,
                              target_state state = target_state::NOT_WANTED) {
  target_dep& target = add_to(record.target_dep);
  target.target = target_name;
  target.install = state;
  return target;
}

inline category_dep& add_category(target_dep& target, std::string_view category,
                                  product* supplier = nullptr) {
  category_dep& dependency = add_to(target.category_dep);
  dependency.category = category;
  dependency.product = supplier;
  return dependency;
}

inline type_dep& add_type(category_dep& category, std::string_view type,
                          const release& minimum = {}) {
  type_dep& alternative = add_to(category.type_dep);
  alternative.type = type;
  alternative.release = minimum;
  if (!category.type_num) category.type_num = 0;
  return alternative;
}

inline std::string shown(product_state state) {
  return std::to_string(static_cast<int>(state));
}

inline std::string shown(path_state state) {
  return std::to_string(static_cast<int>(state));
}

// Returns all four numbers, such as "2.1.3.4".
inline std::string shown(const release& version) {
  return std::to_string(version.version) + "." + std::to_string(version.subversion) + "." +
         std::to_string(version.minorversion) + "." + std::to_string(version.patch);
}

// Returns the states of the used slots, such as "1 2 10".
inline std::string states(const product_table& table) {
  std::string text;
  for (const product& record : table) {
    if (is_free(record)) break;
    text += (text.empty() ? "" : " ") + shown(record.install);
  }
  return text;
}

// Creates an executable shell script.
inline void write_program(const std::filesystem::path& path, std::string_view script) {
  write_file(path, "#!/bin/sh\n" + std::string(script));
  std::filesystem::permissions(path, static_cast<std::filesystem::perms>(0755));
}

// Has programs of `directory` found before those of the same name. For use in a child.
inline void put_first_on_path(const std::string& directory) {
  const char* path = std::getenv("PATH");
  setenv("PATH", (directory + ":" + (path == nullptr ? "" : path)).c_str(), 1);
}

// Has the host call itself `system` and `release` in the rest of a child. Uses ./host.
inline void pretend_host(const std::string& system_and_release) {
  write_program("host/uname", "echo '" + system_and_release + "'\n");
  put_first_on_path(std::filesystem::current_path().string() + "/host");
}

inline bool is_superuser() {
  return geteuid() == 0;
}

constexpr const char* NEEDS_SUPERUSER =
    "needs the superuser; an ordinary user's case stands beside";

// The ordinary user: whoever runs the tests, or "nobody" where that is the superuser.
inline constexpr unsigned NOBODY = 65534;
inline uid_t ordinary_user() {
  return is_superuser() ? NOBODY : geteuid();
}
inline gid_t ordinary_group() {
  return is_superuser() ? NOBODY : getegid();
}

inline std::string user_name(uid_t id) {
  const passwd* entry = getpwuid(id);
  return entry == nullptr ? "" : entry->pw_name;
}

inline std::string group_name(gid_t id) {
  const group* entry = getgrgid(id);
  return entry == nullptr ? "" : entry->gr_name;
}

// Gives up the superuser's rights for the rest of a child.
inline void become_ordinary_user() {
  if (!is_superuser()) return;
  if (setgroups(0, nullptr) != 0 || setgid(NOBODY) != 0 || setuid(NOBODY) != 0) std::abort();
}

// As `in_child`, without the superuser's rights.
inline outcome in_child_as_ordinary_user(std::string_view input,
                                         const std::function<std::string()>& code) {
  return in_child(input, [&] {
    become_ordinary_user();
    return code();
  });
}

// As `in_child`, for one user whose file rights are another's, as a set-user-id program's are.
// Takes the superuser.
inline outcome in_child_of_two_users(uid_t real, uid_t effective, std::string_view input,
                                     const std::function<std::string()>& code) {
  return in_child(input, [&] {
    if (setresuid(real, effective, effective) != 0) std::abort();
    return code();
  });
}

constexpr const char* NEEDS_TWO_USERS = "only the superuser can take two users' ids";

// Has no file grow beyond `bytes` in the rest of a child, as on a full disk.
inline void limit_file_size(rlim_t bytes) {
  const rlimit limit = {bytes, bytes};
  if (std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR || setrlimit(RLIMIT_FSIZE, &limit) != 0)
    std::abort();
}

// Lets every user work in `directory`.
inline void open_to_everybody(const std::filesystem::path& directory) {
  std::filesystem::permissions(directory, std::filesystem::perms::all);
}

// Returns a group that the ordinary user does not belong to.
inline std::string foreign_group() {
  std::string found;
  setgrent();
  while (const group* entry = getgrent()) {
    gid_t own[64];
    const int count = is_superuser() ? 0 : getgroups(64, own);
    bool foreign = entry->gr_gid != ordinary_group();
    for (int i = 0; i < count; ++i) foreign = foreign && own[i] != entry->gr_gid;
    if (foreign) {
      found = entry->gr_name;
      break;
    }
  }
  endgrent();
  return found;
}

}  // namespace morvane

#endif  // MORVANE_TESTS_SUPPORT_RECORDS_H
