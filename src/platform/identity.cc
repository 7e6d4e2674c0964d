#include "platform/identity.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <map>
#include <new>
#include <set>

namespace morvane {

namespace {

// Returns what `find` knows of `key`, or null. Exhausted memory is told apart from a key that is
// not known: the run must not go on as if it were not.
template <typename Entry, typename Key>
const Entry* look_up(Entry* find(Key), Key key) {
  errno = 0;
  const Entry* entry = find(key);
  if (entry == nullptr && errno == ENOMEM) throw std::bad_alloc();
  return entry;
}

std::optional<user> to_user(const passwd* entry) {
  if (entry == nullptr) return std::nullopt;
  return user{entry->pw_name, entry->pw_dir};
}

std::string name_of(const std::optional<user>& who) {
  return who ? who->name : "";
}

}  // namespace

std::optional<user> find_user(std::string_view name) {
  static std::map<std::string, user, std::less<>> known;
  const auto remembered = known.find(name);
  if (remembered != known.end()) return remembered->second;
  std::optional<user> found = to_user(look_up(getpwnam, std::string(name).c_str()));
  if (found) known.emplace(name, *found);
  return found;
}

std::optional<user> real_user() {
  return to_user(look_up(getpwuid, getuid()));
}

std::string real_user_name() {
  return name_of(real_user());
}

std::string effective_user_name() {
  return name_of(to_user(look_up(getpwuid, geteuid())));
}

std::string effective_group_name() {
  const group* entry = look_up(getgrgid, getegid());
  return entry == nullptr ? "" : entry->gr_name;
}

bool group_exists(std::string_view name) {
  static std::set<std::string, std::less<>> known;
  if (known.contains(name)) return true;
  const bool found = look_up(getgrnam, std::string(name).c_str()) != nullptr;
  if (found) known.emplace(name);
  return found;
}

bool started_by_superuser() {
  return getuid() == 0;
}

bool acts_as_superuser() {
  return geteuid() == 0;
}

}  // namespace morvane
