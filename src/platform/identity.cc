#include "platform/identity.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace morvane {

namespace {

std::optional<user> to_user(const passwd* entry) {
  if (entry == nullptr) return std::nullopt;
  return user{entry->pw_name, entry->pw_dir};
}

std::string name_of(const std::optional<user>& who) {
  return who ? who->name : "";
}

}  // namespace

std::optional<user> find_user(std::string_view name) {
  return to_user(getpwnam(std::string(name).c_str()));
}

std::optional<user> real_user() {
  return to_user(getpwuid(getuid()));
}

std::string real_user_name() {
  return name_of(real_user());
}

std::string effective_user_name() {
  return name_of(to_user(getpwuid(geteuid())));
}

std::string effective_group_name() {
  const group* entry = getgrgid(getegid());
  return entry == nullptr ? "" : entry->gr_name;
}

bool group_exists(std::string_view name) {
  return getgrnam(std::string(name).c_str()) != nullptr;
}

bool started_by_superuser() {
  return getuid() == 0;
}

bool acts_as_superuser() {
  return geteuid() == 0;
}

}  // namespace morvane
