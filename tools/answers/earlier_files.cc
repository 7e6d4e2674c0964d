#include "answers/earlier_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>

#include "platform/file.h"

namespace morvane {

namespace {

std::optional<std::string> link_at(const std::string& name) {
  std::array<char, PATH_MAX> target;
  const ssize_t size = readlink(name.c_str(), target.data(), target.size());
  if (size < 0) return std::nullopt;
  return std::string(target.data(), static_cast<std::size_t>(size));
}

// Returns how the file is, or nothing where it cannot be read.
std::optional<earlier_state> state_of(const std::string& name) {
  earlier_state state = {.name = name, .link = link_at(name)};
  struct stat status;
  if (stat(name.c_str(), &status) != 0) return state;
  state.foreign = !S_ISREG(status.st_mode);
  if (state.foreign) return state;
  state.mode = status.st_mode & 07777U;
  state.owner = status.st_uid;
  state.group = status.st_gid;
  const descriptor file = open_for_reading(name);
  if (!file.is_open()) return std::nullopt;
  state.content = read_rest(file);
  if (!state.content) return std::nullopt;
  return state;
}

bool is_as_before(const earlier_state& before, const earlier_state& now) {
  return before.foreign == now.foreign && before.link == now.link &&
         before.content == now.content && before.mode == now.mode && before.owner == now.owner &&
         before.group == now.group;
}

bool put_back_content(const earlier_state& before) {
  bool created = false;
  descriptor file = open_for_writing(before.name, created);
  if (!file.is_open()) return false;
  // The owner first: giving a file away takes the set-id bits.
  const bool given = !created || fchown(file.number(), before.owner, before.group) == 0;
  const bool shaped = !created || fchmod(file.number(), before.mode) == 0;
  const bool written = replace_content(file, *before.content);
  return file.close() && given && shaped && written;
}

bool restore(const earlier_state& before) {
  if (before.foreign) return true;
  const std::optional<earlier_state> now = state_of(before.name);
  if (now && is_as_before(before, *now)) return true;
  const bool was_there = before.link || before.content;
  const bool other_kind = !now || now->link != before.link;
  if ((!was_there || other_kind) && unlink(before.name.c_str()) != 0 && errno != ENOENT) {
    return false;
  }
  if (other_kind && before.link && symlink(before.link->c_str(), before.name.c_str()) != 0) {
    return false;
  }
  return !before.content || put_back_content(before);
}

}  // namespace

std::optional<earlier_files> remember_files(const std::vector<std::string>& names) {
  earlier_files files;
  for (const std::string& name : names) {
    std::optional<earlier_state> state = state_of(name);
    if (!state) return std::nullopt;
    files.push_back(std::move(*state));
  }
  return files;
}

std::vector<std::string> restore_files(const earlier_files& files) {
  std::vector<std::string> failed;
  for (const earlier_state& before : files) {
    if (!restore(before)) failed.push_back(before.name);
  }
  return failed;
}

}  // namespace morvane
