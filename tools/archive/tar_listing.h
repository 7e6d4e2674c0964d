// What the tar that will extract an archive lists of it: what another reader takes the archive for
// need not be what is extracted.
#ifndef MORVANE_ARCHIVE_TAR_LISTING_H
#define MORVANE_ARCHIVE_TAR_LISTING_H

#include <sys/types.h>

#include <string>
#include <vector>

#include "archive/archive_reader.h"
#include "platform/file.h"

namespace morvane {

class tar_listing {
 public:
  // Starts tar to list the archive `path`, beside what else is done meanwhile. Only GNU tar lists
  // names so that they can be told apart: with any other nothing is compared.
  explicit tar_listing(const std::string& path);

  // Ends tar.
  ~tar_listing();
  tar_listing(const tar_listing&) = delete;
  tar_listing& operator=(const tar_listing&) = delete;

  // Returns where tar reads the archive otherwise than as `members`, in a sentence without its
  // beginning; empty where it does not, or nothing is compared. Called once.
  std::string difference_from(const std::vector<archive_member>& members);

 private:
  // Waits for tar; returns whether it was content.
  bool wait();

  descriptor list_;
  pid_t tar_ = 0;  // none
};

}  // namespace morvane

#endif  // MORVANE_ARCHIVE_TAR_LISTING_H
