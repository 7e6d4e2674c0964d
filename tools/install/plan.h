// What an installation will do, found out without doing it.
#ifndef MORVANE_INSTALL_PLAN_H
#define MORVANE_INSTALL_PLAN_H

#include <cstdint>
#include <string>
#include <vector>

#include "install_makefile/install_makefile.h"
#include "install_makefile/product_settings.h"
#include "report/finding.h"

namespace morvane {

// Something that the operator should know of. An error keeps everything from being done.
struct plan_finding {
  morvane::severity severity = morvane::severity::ERROR;
  std::string id;
  std::string product;  // empty for what concerns them all
  std::string text;
};

struct product_plan {
  product_facts facts;
  product_settings settings;
  // Paths below the product's directory, sorted. Its parts may do more.
  std::vector<std::string> added;              // files and links
  std::vector<std::string> added_directories;  // those that are made on the way, too
  std::vector<std::string> renewed;            // by what has the content that lies there
  std::vector<std::string> replaced;           // what else lies there
  std::vector<std::string> given_away;         // files of others that get its owner or group
  std::vector<std::string> extracted;  // by the archive, directories made on the way included
  std::vector<std::string> copied;     // by the configurator's rules
  std::uint64_t bytes = 0;             // that this takes on the disk
};

struct planned_space {
  std::string path;  // of the first product on that file system
  std::uint64_t needed = 0;
  std::uint64_t free = 0;
};

struct install_plan {
  std::string directory;  // of the archives
  std::vector<product_plan> products;
  std::vector<planned_space> space;
  std::vector<std::string> tools;  // that are needed
  std::vector<plan_finding> findings;

  bool is_blocked() const;
};

// Returns what make will do on `makefile` in the current directory, where it was written. The
// host's receipts are kept in `registry`.
install_plan plan_installation(const install_makefile& makefile, const std::string& registry);

}  // namespace morvane

#endif  // MORVANE_INSTALL_PLAN_H
