// Who runs the program, and which users and groups the host knows. A name that the host knows is
// looked up once in a run, as the same few are asked for with every product; one that it does not
// know is looked up again each time, since the operator may add it while a question waits.
#ifndef MORVANE_PLATFORM_IDENTITY_H
#define MORVANE_PLATFORM_IDENTITY_H

#include <optional>
#include <string>
#include <string_view>

namespace morvane {

struct user {
  std::string name;
  std::string home;  // directory
};

// Returns the user of that login name, or nothing where the host knows none.
std::optional<user> find_user(std::string_view name);

// Returns the user who started the program, or nothing where the host does not know its id.
std::optional<user> real_user();

// Return the login or group name of an identity, empty where the host does not know its id.
std::string real_user_name();
std::string effective_user_name();
std::string effective_group_name();

// Tells whether the host knows a group of that name.
bool group_exists(std::string_view name);

// Tells whether the superuser started the program.
bool started_by_superuser();

// Tells whether the program acts with the superuser's rights.
bool acts_as_superuser();

}  // namespace morvane

#endif  // MORVANE_PLATFORM_IDENTITY_H
