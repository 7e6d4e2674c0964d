// The version of the links tool, which has no description.
#ifndef MORVANE_DEPEND_LINKS_PROBE_H
#define MORVANE_DEPEND_LINKS_PROBE_H

#include <optional>
#include <string>
#include <string_view>

#include "catalogue/release.h"

namespace morvane {

// Returns the path of the tool's configuration file: `links` where it names that file, else the
// default path, else the one below `base` (below the tool's standard directory where there is no
// base), else what the operator answers. The file exists.
std::string get_links_path(std::string links, std::optional<std::string_view> base);

// Returns the version of the tool with the configuration file `links`, by running that file with
// the arguments that the message file gives.
release get_kemo_version(std::string_view links);

}  // namespace morvane

#endif  // MORVANE_DEPEND_LINKS_PROBE_H
