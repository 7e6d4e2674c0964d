#include "install/archived_contents.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "platform/file.h"
#include "tree/digest.h"

namespace morvane {

bool archived_contents::lie_at(const std::string& path, const archive_member& member) {
  if (member.kind == member_kind::LINK) {
    std::error_code error;
    return std::filesystem::read_symlink(path, error) == member.target && !error;
  }
  if (member.kind == member_kind::FILE) return is_same_file(path, member);
  // The content of a hard link is that of the file that stood before it under that name.
  const auto target = std::ranges::find(members_, member.target, &archive_member::name);
  return member.kind == member_kind::HARD_LINK && target != members_.end() &&
         target->kind == member_kind::FILE && is_same_file(path, *target);
}

bool archived_contents::is_same_file(const std::string& path, const archive_member& member) {
  struct stat status;
  const bool is_file = lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
                       static_cast<std::uint64_t>(status.st_size) == member.size;
  if (!is_file) return false;
  if (!std::exchange(read_, true)) contents_ = contents_of(file_);
  const auto number = static_cast<std::size_t>(&member - members_.data());
  if (!contents_ || number >= contents_->size()) return false;
  const descriptor file = open_for_reading(path);
  return file.is_open() && digest_of_file(file, member.size) == (*contents_)[number].digest;
}

}  // namespace morvane
