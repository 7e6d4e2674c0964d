#include "install/host_checks.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <set>

#include "lint/names.h"
#include "platform/identity.h"
#include "platform/trusted_path.h"
#include "text/number.h"
#include "text/quoting.h"
#include "text/words.h"

namespace morvane {

namespace {

using std::string;

bool is_on_path(const string& tool) {
  if (tool.find('/') != string::npos) return access(tool.c_str(), X_OK) == 0;
  const char* path = std::getenv("PATH");
  const auto directories = split_words(path == nullptr ? "" : path, ":");
  return std::ranges::any_of(directories, [&](std::string_view directory) {
    return access((string(directory) + "/" + tool).c_str(), X_OK) == 0;
  });
}

// Tells whether this user, who is not the superuser, belongs to a group.
bool belongs_to(const string& name) {
  const group* found = getgrnam(name.c_str());
  if (found == nullptr) return false;
  const gid_t wanted = found->gr_gid;
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(getgroups(0, nullptr), 0)));
  const int count = getgroups(static_cast<int>(groups.size()), groups.data());
  groups.resize(static_cast<std::size_t>(std::max(count, 0)));
  return wanted == getegid() || std::ranges::find(groups, wanted) != groups.end();
}

void find(std::vector<plan_finding>& findings, severity how, const char* id,
          const product_facts& facts, const string& text) {
  findings.push_back({how, id, facts.id, text});
}

}  // namespace

string make_program() {
  const char* make = std::getenv("MAKE");
  return make == nullptr || *make == '\0' ? "make" : make;
}

std::vector<string> needed_tools(const std::vector<product_facts>& products) {
  std::set<string> tools = {make_program(), "sh"};
  for (const product_facts& facts : products) {
    tools.insert({"cat", "chgrp", "rm", "test"});
    if (facts.is_new) tools.insert({"cut", "diff", "tar"});
    if (facts.described) tools.insert({"cp", "diff", "mkdir"});
    if (facts.superuser) tools.insert("chown");
    if (facts.closed) tools.insert("chmod");
    if (facts.old_owner || facts.old_group) tools.insert("find");
  }
  return {tools.begin(), tools.end()};
}

void check_tools(const std::vector<string>& tools, std::vector<plan_finding>& findings) {
  for (const string& tool : tools) {
    if (is_on_path(tool)) continue;
    findings.push_back(
        {severity::ERROR, "tool-missing", "", in_quotes(tool) + " is in no directory of PATH"});
  }
}

bool check_directory(const product_facts& facts, std::vector<plan_finding>& findings) {
  const auto fail = [&](const char* id, const string& why) {
    find(findings, severity::ERROR, id, facts,
         "its directory " + in_quotes(facts.path) + " " + why);
  };
  struct stat status;
  if (!facts.path.starts_with('/') || holds_special_characters(facts.path)) {
    fail("directory-name", "cannot be named to make and the shell");
  } else if (stat(facts.path.c_str(), &status) != 0) {
    const int error = errno;
    fail("directory-missing", string("is not there: ") + std::strerror(error));
    return error == ENOENT;
  } else if (!S_ISDIR(status.st_mode)) {
    fail("directory-none", "is no directory");
  } else if (faccessat(AT_FDCWD, facts.path.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
    fail("directory-closed", string("cannot be written: ") + std::strerror(errno));
  } else {
    if (acts_as_superuser() && (status.st_mode & S_IWOTH) != 0) {
      fail("directory-open", "can be written by everybody, who could have anything replaced");
    } else if (!cannot_be_redirected(facts.path)) {
      find(findings, severity::WARNING, "directory-open", facts,
           "others can write to its directory " + in_quotes(facts.path) + ", or to one above it");
    }
    return true;
  }
  return false;
}

void check_owner(const product_facts& facts, std::vector<plan_finding>& findings) {
  if (facts.superuser && !find_user(facts.owner) && !is_digits(facts.owner)) {
    find(findings, severity::ERROR, "user-unknown", facts,
         "the host knows no user " + in_quotes(facts.owner));
  }
  if (!group_exists(facts.group) && !is_digits(facts.group)) {
    find(findings, severity::ERROR, "group-unknown", facts,
         "the host knows no group " + in_quotes(facts.group));
  } else if (!acts_as_superuser() && !is_digits(facts.group) && !belongs_to(facts.group)) {
    find(findings, severity::ERROR, "group-foreign", facts,
         "you do not belong to the group " + in_quotes(facts.group));
  }
  if (facts.superuser && !acts_as_superuser()) {
    find(findings, severity::ERROR, "superuser-needed", facts,
         "the superuser configured it: owners can only be changed by him");
  }
  if (!facts.superuser && acts_as_superuser()) {
    find(findings, severity::WARNING, "superuser-not-needed", facts,
         "an ordinary user configured it: files keep the owners that the archive names");
  }
}

void check_rule_files(const product_facts& facts, std::vector<plan_finding>& findings) {
  std::vector<string> steps;
  for (const std::string_view rule : PRODUCT_RULES) {
    if (!rule.starts_with('.')) steps.push_back(facts.id + string(rule));
  }
  for (const string& target : facts.targets) steps.push_back(facts.id + "-" + target);
  // Rules without commands are made of sources of their names.
  for (const std::string_view ending : SOURCE_ENDINGS) {
    for (const char* rule : {"", "-new"}) steps.push_back(facts.id + rule + string(ending));
  }
  for (const string& step : steps) {
    struct stat status;
    if (lstat(step.c_str(), &status) != 0) continue;
    find(findings, severity::ERROR, "file-like-rule", facts,
         "make takes " + in_quotes(step) + " for a step, or for the source of one: remove it");
  }
}

void check_identifier(const product_facts& facts, std::vector<plan_finding>& findings) {
  const bool is_own_rule = std::ranges::find(OWN_RULES, facts.id) != OWN_RULES.end();
  if (!is_own_rule && !facts.id.starts_with('-') && !holds_special_characters(facts.id)) return;
  find(findings, severity::ERROR, "identifier-characters", facts,
       "the identifier cannot name rules: rename the archive, and configure again");
}

}  // namespace morvane
