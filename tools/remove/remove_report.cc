#include "remove/remove_report.h"

#include <algorithm>

#include "command/command_line.h"
#include "report/json.h"

namespace morvane {

namespace {

void add_kept(json_writer& json, const removal& planned) {
  json.key("kept");
  json.begin_array();
  for (auto path = planned.paths.rbegin(); path != planned.paths.rend(); ++path) {
    if (path->deed == deed::REMOVE || path->why.empty()) continue;
    json.begin_object();
    json.member("path", absolute_path(planned.product->content, *path->entry));
    json.member("text", path->why);
    json.end_object();
  }
  json.end_array();
}

void add_list(json_writer& json, const char* name, const std::vector<std::string>& list) {
  json.key(name);
  json.begin_array();
  for (const std::string& each : list) json.value(each);
  json.end_array();
}

void add_product(json_writer& json, const removal& planned, const removed_product& done) {
  const receipt& of = planned.product->content;
  std::vector<std::string> removed;
  for (const receipt_entry* entry : done.removed) removed.push_back(absolute_path(of, *entry));
  std::ranges::sort(removed);
  std::vector<std::string> remarks;
  for (const planned_path& path : planned.paths) {
    const bool is_told = path.deed == deed::REMOVE && !path.why.empty();
    if (is_told) remarks.push_back(path.entry->path + ": " + path.why);
  }
  remarks.insert(remarks.end(), done.remarks.begin(), done.remarks.end());
  json.begin_object();
  json.member("product", of.id);
  json.member("version", of.version);
  json.member("directory", of.directory);
  add_list(json, "removed", removed);
  add_kept(json, planned);
  add_list(json, "remarks", remarks);
  add_list(json, "faults", done.faults);
  json.end_object();
}

// As if all went as planned.
removed_product foreseen(const removal& planned) {
  removed_product all;
  for (const planned_path& path : planned.paths) {
    if (path.deed == deed::REMOVE) all.removed.push_back(path.entry);
  }
  return all;
}

}  // namespace

std::string json_of(const std::vector<removal>& planned) {
  std::vector<removed_product> all;
  all.reserve(planned.size());
  for (const removal& each : planned) all.push_back(foreseen(each));
  return json_of(planned, all);
}

std::string json_of(const std::vector<removal>& planned, const std::vector<removed_product>& done) {
  json_writer json;
  json.begin_object();
  json.member("command", "morvane-remove");
  json.member("version", command_version());
  json.key("products");
  json.begin_array();
  for (std::size_t i = 0; i < done.size(); ++i) add_product(json, planned[i], done[i]);
  json.end_array();
  json.end_object();
  return json.text();
}

}  // namespace morvane
