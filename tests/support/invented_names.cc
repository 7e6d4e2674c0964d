#include "support/invented_names.h"

#include <dlfcn.h>
#include <grp.h>
#include <pwd.h>

#include <cstring>

namespace {

const char* home = "/home/x";
const char* one_more = nullptr;
int lookups = 0;

bool is_invented(const char* name) {
  ++lookups;
  if (one_more != nullptr && std::strcmp(name, one_more) == 0) return true;
  return *name == 'x' && std::strspn(name, "x$^") == std::strlen(name);
}

}  // namespace

// Stand in for the library's functions.
extern "C" passwd* getpwnam(const char* name) {
  static passwd invented{};
  if (!is_invented(name)) {
    return reinterpret_cast<decltype(&getpwnam)>(dlsym(RTLD_NEXT, "getpwnam"))(name);
  }
  invented.pw_name = const_cast<char*>(name);
  invented.pw_dir = const_cast<char*>(home);
  return &invented;
}

extern "C" group* getgrnam(const char* name) {
  static group invented{};
  if (!is_invented(name)) {
    return reinterpret_cast<decltype(&getgrnam)>(dlsym(RTLD_NEXT, "getgrnam"))(name);
  }
  invented.gr_name = const_cast<char*>(name);
  return &invented;
}

namespace morvane {

void set_home_of_invented(const char* directory) {
  home = directory;
}

void set_invented_name(const char* name) {
  one_more = name;
}

int lookups_by_name() {
  return lookups;
}

}  // namespace morvane
