#include "install/plan_report.h"

#include <algorithm>
#include <cstdio>

#include "report/json.h"

namespace morvane {

namespace {

using std::string;

// No more names than these are shown of a list.
constexpr std::size_t MOST_SHOWN = 3;

string counted(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

string shown_names(const std::vector<string>& names) {
  string shown;
  for (std::size_t i = 0; i < std::min(names.size(), MOST_SHOWN); ++i) {
    shown += (i == 0 ? "" : ", ") + printable(names[i]);
  }
  if (names.size() > MOST_SHOWN) {
    shown += " and " + std::to_string(names.size() - MOST_SHOWN) + " more";
  }
  return shown;
}

string shown_size(std::uint64_t bytes) {
  constexpr std::uint64_t STEP = 1024;
  const char* const units[] = {"bytes", "KiB", "MiB", "GiB", "TiB"};
  std::size_t unit = 0;
  double size = static_cast<double>(bytes);
  for (; size >= STEP && unit < std::size(units) - 1; ++unit) size /= STEP;
  char digits[32];
  std::snprintf(digits, sizeof digits, size < 10 && unit > 1 ? "%.1f" : "%.0f", size);
  return string(digits) + " " + units[unit];
}

string heading(const product_plan& product) {
  const product_facts& facts = product.facts;
  string line = printable(facts.id);
  if (!product.settings.version.empty()) line += " " + printable(product.settings.version);
  line += " -> " + printable(facts.path) + "   " + (facts.is_new ? "new" : "configured again");
  line += "   ";
  if (facts.superuser) line += "owner " + printable(facts.owner) + ", ";
  return line + "group " + printable(facts.group) + ", others " +
         (facts.closed ? "lose access" : "keep access") + "\n";
}

string product_text(const product_plan& product, bool keeps) {
  const product_facts& facts = product.facts;
  string text = heading(product);
  if (!product.added.empty() || !product.added_directories.empty()) {
    text += "  + " + counted(product.added.size(), "file", "files") + ", " +
            counted(product.added_directories.size(), "directory", "directories") + "\n";
  }
  if (!product.renewed.empty()) {
    text += "  = " + std::to_string(product.renewed.size()) + " replaced by the same\n";
  }
  if (!product.replaced.empty()) {
    text += "  ~ " + std::to_string(product.replaced.size()) + " replaced, " +
            (keeps ? "kept: " : "no copy kept: ") + shown_names(product.replaced) + "\n";
  }
  if (facts.old_owner || facts.old_group) {
    text += "  > what is left with " +
            (facts.old_owner ? "owner " + printable(*facts.old_owner) : "") +
            (facts.old_owner && facts.old_group ? " or " : "") +
            (facts.old_group ? "group " + printable(*facts.old_group) : "") +
            " is handed on: not predictable\n";
  }
  for (const string& target : facts.targets) {
    text += "  ! part '" + printable(target) + "' runs install/Makefile: not predictable\n";
  }
  return text;
}

string findings_of(const install_plan& plan, const string& product) {
  string text;
  for (const plan_finding& found : plan.findings) {
    if (found.product != product) continue;
    text += "  " + string(severity_name(found.severity)) + ": " + printable(found.text) + " [" +
            found.id + "]\n";
  }
  return text;
}

string space_text(const install_plan& plan) {
  string text;
  for (const planned_space& space : plan.space) {
    text += (text.empty() ? "space: " : "; ") + printable(space.path) + " needs " +
            shown_size(space.needed) + ", " + shown_size(space.free) + " free";
  }
  return text;
}

void write_list(json_writer& json, const char* name, const std::vector<string>& list) {
  json.key(name);
  json.begin_array();
  for (const string& each : list) json.value(each);
  json.end_array();
}

void write_product(json_writer& json, const product_plan& product) {
  const product_facts& facts = product.facts;
  json.begin_object();
  json.member("id", facts.id);
  json.member("name", facts.shown_name);
  json.member("version", product.settings.version);
  json.member("directory", facts.path);
  json.member("owner", facts.owner);
  json.member("group", facts.group);
  json.flag("others_keep_access", !facts.closed);
  json.flag("new", facts.is_new);
  write_list(json, "parts", facts.targets);
  write_list(json, "added", product.added);
  write_list(json, "added_directories", product.added_directories);
  write_list(json, "replaced_by_the_same", product.renewed);
  write_list(json, "replaced", product.replaced);
  json.member("handed_on_from_owner", facts.old_owner.value_or(""));
  json.member("handed_on_from_group", facts.old_group.value_or(""));
  write_list(json, "given_away", product.given_away);
  json.member("bytes", product.bytes);
  json.end_object();
}

}  // namespace

string plan_text(const install_plan& plan, bool keeps) {
  string text;
  for (const product_plan& product : plan.products) {
    text += product_text(product, keeps) + findings_of(plan, product.facts.id);
  }
  if (plan.products.empty()) text += "no product is configured\n";
  const bool misses = std::ranges::any_of(
      plan.findings, [](const plan_finding& each) { return each.id == "tool-missing"; });
  const string space = space_text(plan);
  text += space + (space.empty() ? "" : "        ") +
          (misses ? "tools: some are missing\n" : "tools: all found\n");
  text += findings_of(plan, "");
  const auto blocking = static_cast<std::size_t>(
      std::ranges::count(plan.findings, severity::ERROR, &plan_finding::severity));
  return text + (blocking == 0 ? "nothing blocks\n"
                               : counted(blocking, "finding blocks", "findings block") + "\n");
}

string plan_json(const install_plan& plan) {
  json_writer json;
  json.begin_object();
  json.member("directory", plan.directory);
  json.flag("blocked", plan.is_blocked());
  json.key("products");
  json.begin_array();
  for (const product_plan& product : plan.products) write_product(json, product);
  json.end_array();
  json.key("space");
  json.begin_array();
  for (const planned_space& space : plan.space) {
    json.begin_object();
    json.member("path", space.path);
    json.member("needed", space.needed);
    json.member("free", space.free);
    json.end_object();
  }
  json.end_array();
  write_list(json, "tools", plan.tools);
  json.key("findings");
  json.begin_array();
  for (const plan_finding& found : plan.findings) {
    json.begin_object();
    json.member("severity", severity_name(found.severity));
    json.member("id", found.id);
    json.member("product", found.product);
    json.member("text", found.text);
    json.end_object();
  }
  json.end_array();
  json.end_object();
  return json.text();
}

}  // namespace morvane
