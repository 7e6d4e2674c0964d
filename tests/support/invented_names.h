// Users and groups that only the tests know.
#ifndef MORVANE_TESTS_SUPPORT_INVENTED_NAMES_H
#define MORVANE_TESTS_SUPPORT_INVENTED_NAMES_H

namespace morvane {

// Gives every invented user that home directory, "/home/x" before. Invented are the names that
// begin with "x" and hold nothing but "x" and what the shell would interpret, "$" and "^": the host
// then knows such a user, and such a group, of every length.
void set_home_of_invented(const char* directory);

// Invents a user and a group `name` besides, and no others but those where it is null.
void set_invented_name(const char* name);

// Returns how often users and groups were looked up by name so far.
int lookups_by_name();

}  // namespace morvane

#endif  // MORVANE_TESTS_SUPPORT_INVENTED_NAMES_H
