#include "platform/effects.h"

#include <utility>

#include "platform/shell.h"
#include "platform/signals.h"
#include "text/format.h"
#include "text/quoting.h"

namespace morvane {

namespace {

bool is_file(const std::string& name) {
  return run_command(fill("test -f ./%s", {quote(name)}));
}

bool make_directory(const std::string& path) {
  const std::string word = quote(path);
  // The status is that of chmod, which fails where no directory has come about.
  return run_command(fill("mkdir -p %s; chmod 755 %s", {word, word}));
}

// The form of the command is what installations have always run: it touches /dev/null too and lets
// its output through.
bool may_create_in(const std::string& directory) {
  return run_command(fill("touch %s 2>/dev/null /dev/null", {quote(directory)}));
}

group_trial try_group(const std::string& probe, std::string_view group) {
  remove_on_signal(probe);  // it is empty, and may look like a file that was written
  if (!run_command(fill("touch ./%s 2>/dev/null 1>/dev/null", {probe}))) {
    return group_trial::NO_PROBE;
  }
  const bool allowed =
      run_command(fill("chgrp %s ./%s 2>/dev/null 1>/dev/null", {quote(group), probe}));
  return allowed ? group_trial::ALLOWED : group_trial::REFUSED;
}

void remove_probe(const std::string& probe) {
  // The quotes keep an alias of that name away.
  run_command(fill("'rm' -f ./%s", {probe}));
  keep_on_signal(probe);
}

write_outcome write_file(const std::string& name, earlier_file earlier,
                         const composition& compose) {
  output_file file(name, earlier);
  if (!file.is_open()) return write_outcome::NOT_OPENED;
  const std::optional<std::string> content = compose();
  const bool written = content && file.write(*content);
  return written ? write_outcome::WRITTEN : write_outcome::NOT_WRITTEN;
}

// At run time, and not by linking something else: a rehearsal of a run and the run itself are the
// same program.
effects in_force = effects_on_host();

}  // namespace

effects effects_on_host() {
  return {.exists = exists,
          .is_file = is_file,
          .list_files = get_files,
          .make_directory = make_directory,
          .may_create_in = may_create_in,
          .try_group = try_group,
          .remove_probe = remove_probe,
          .write_file = write_file};
}

void use_effects(effects replacement) {
  in_force = std::move(replacement);
}

const effects& on_host() {
  return in_force;
}

}  // namespace morvane
