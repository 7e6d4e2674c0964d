#include "tree/walk.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "tree/directory.h"

namespace morvane {

namespace {

class walker {
 public:
  explicit walker(const std::function<bool(const tree_file&)>& enter) : enter_(enter) {}

  void list(const descriptor& directory, const std::string& path, std::size_t depth) {
    const auto names = names_in(directory);
    if (!names) return fail(path.empty() ? "." : path);
    for (const std::string& name : *names) {
      const std::string below = path.empty() ? name : path + "/" + name;
      std::optional<file_status> status = look_at(directory, name);
      if (!status) {
        fail(below);
        continue;
      }
      tree_.files.push_back({below, std::move(*status)});
      const tree_file& file = tree_.files.back();
      if (file.status.kind == file_kind::DIRECTORY && enter_(file)) {
        descend(directory, name, below, depth);
      }
    }
  }

  walked_tree tree() {
    std::ranges::sort(tree_.files, {}, &tree_file::path);
    return std::move(tree_);
  }

 private:
  void descend(const descriptor& directory, const std::string& name, const std::string& path,
               std::size_t depth) {
    if (depth == DEEPEST_DIRECTORY) {
      tree_.faults.push_back({path, ENAMETOOLONG});
      return;
    }
    const descriptor below = open_below(directory, name);
    if (below.is_open()) {
      list(below, path, depth + 1);
    } else {
      fail(path);
    }
  }

  void fail(const std::string& path) {
    if (errno != ENOENT) tree_.faults.push_back({path, errno});
  }

  const std::function<bool(const tree_file&)>& enter_;
  walked_tree tree_;
};

}  // namespace

walked_tree walk(const descriptor& directory, const std::function<bool(const tree_file&)>& enter) {
  walker walking(enter);
  walking.list(directory, "", 1);
  return walking.tree();
}

}  // namespace morvane
