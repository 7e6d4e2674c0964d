// What a run does to the host, besides printing and reading answers.
//
// All of it goes through one value, which can be replaced: a rehearsal of a run, which changes
// nothing, and the run itself are the same program.
//
// What looks at something that a deed of the same run can have made goes through it as well: else a
// rehearsal would miss the directory that it was told to create. What no deed of a run changes is
// asked of the host itself: its name, its users and groups, the tools on PATH, the current
// directory, what messages and descriptions say, and the site's own commands, which only look. The
// scratch files of such probes come and go.
#ifndef MORVANE_PLATFORM_EFFECTS_H
#define MORVANE_PLATFORM_EFFECTS_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/directory.h"
#include "platform/output_file.h"

namespace morvane {

enum class group_trial { NO_PROBE, REFUSED, ALLOWED };

enum class write_outcome { NOT_OPENED, NOT_WRITTEN, WRITTEN };

// Returns the content of a file, or nothing where there is to be none.
using composition = std::function<std::optional<std::string>()>;

// The names of files and probes are those of entries of the current directory. Every member is set.
struct effects {
  // Tells whether `path` names something that exists, links followed; no permission to read it is
  // needed.
  std::function<bool(std::string_view path)> exists;

  // Tells whether `name` is a file.
  std::function<bool(const std::string& name)> is_file;

  // Returns the names in `directory` that match `pattern`, as `get_files` does. A directory that
  // was made in this run is there and holds none.
  std::function<std::optional<file_names>(std::string_view directory, std::string_view pattern)>
      list_files;

  // Makes the directory `path` and those above it, as far as they are missing; every user may enter
  // it and look at it. Returns whether that worked.
  std::function<bool(const std::string& path)> make_directory;

  // Tells whether this user may create something in `directory`. Where nothing is there a file may
  // come about.
  std::function<bool(const std::string& directory)> may_create_in;

  // Tries to create the file `probe` and to give it to `group`. Whatever comes of it,
  // `remove_probe` is the next deed, but where there is no probe.
  std::function<group_trial(const std::string& probe, std::string_view group)> try_group;
  std::function<void(const std::string& probe)> remove_probe;

  // Opens the file `name`, or creates it, and then makes what `compose` returns its content; where
  // that is nothing the file counts as not written. `compose` is not called where the file cannot
  // be opened. A file that was there keeps its mode and owner; where it is not written in full,
  // `earlier` tells what becomes of it. A file that was created and that nothing was written to
  // does not stay.
  std::function<write_outcome(const std::string& name, earlier_file earlier,
                              const composition& compose)>
      write_file;
};

// Returns the effects on the host itself, by its shell and its file system.
effects effects_on_host();

// Has `replacement` take the place of the effects from now on. Until then they are those above.
void use_effects(effects replacement);

// Returns the effects in force: the way to them for everybody.
const effects& on_host();

}  // namespace morvane

#endif  // MORVANE_PLATFORM_EFFECTS_H
