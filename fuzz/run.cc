// The whole run: a tiny distribution, lines of the message file and the operator's answers are cut
// out of the input (see input.h), and a made-up host stands in for the shell.
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <system_error>
#include <vector>

#include "console/leave.h"
#include "depend/order.h"
#include "driver/catalogue_load.h"
#include "driver/installation_run.h"
#include "driver/start_up.h"
#include "host/tools.h"
#include "host_substitute.h"
#include "input.h"
#include "leave_substitute.h"
#include "messages/table.h"
#include "support/messages.h"
#include "target.h"

namespace {

using namespace morvane;

constexpr const char* MAKEFILE = "install.mk";

void write_file(const std::filesystem::path& path, std::string_view content) {
  std::error_code failed;  // a name may be taken by a directory, and the other way round
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), failed);
  std::ofstream(path, std::ios::binary) << content;
}

std::string read_file(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Returns the message file that every run begins with: the texts of the unit tests.
std::string make_messages() {
  use_test_messages();
  std::string lines;
  for (int number = 1; number < MESSAGE_COUNT; ++number) {
    std::string digits = std::to_string(number);
    digits.resize(4, ' ');
    lines += digits;
    for (const char c : r[number]) {
      lines += c == '\n' ? std::string("\\n") : c == '\\' ? std::string("\\\\") : std::string(1, c);
    }
    lines += "|\n";
  }
  return lines;
}

// Puts programs for the tools that every installation needs on PATH, and nothing else.
void put_tools_on_path(const std::string& directory) {
  for (const std::string_view tool : INST_TOOLS) {
    const std::string path = directory + "/.tools/" + std::string(tool);
    write_file(path, "");
    chmod(path.c_str(), S_IRWXU);
  }
  setenv("PATH", (directory + "/.tools").c_str(), 1);
}

// Empties the directory of the run but for the tools.
void tidy_up(const std::string& directory) {
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    if (entry.path().filename() != ".tools") std::filesystem::remove_all(entry.path());
  }
}

bool is_in(const product_table& table, const product* record) {
  return record >= table.data() && record < table.data() + table.size();
}

void check(const product& record, const product_table& table) {
  for (const auto& target : record.target_dep) {
    if (target == nullptr) continue;
    for (const auto& category : target->category_dep) {
      if (category == nullptr || category->product == nullptr) continue;
      require(is_in(table, category->product), "a supplier is a record of the table");
      require(!is_ordered(record) || target->install != target_state::RESOLVED ||
                  !is_free(*category->product),
              "the supplier of a target to install is not a free slot");
    }
  }
  for (const auto& [level, supplier] : record.needed_patches) {
    require(supplier == nullptr || is_in(table, supplier), "an original is a record of the table");
  }
}

// What holds whenever and wherever the run ends.
void check(const product_table& table) {
  const auto free = std::find_if(table.begin(), table.end(), is_free);
  require(std::all_of(free, table.end(), is_free), "used slots come first");
  std::for_each(table.begin(), free, [&](const product& record) { check(record, table); });
}

// Returns the products that must be installed before `record`.
std::vector<const product*> suppliers_of(const product& record) {
  std::vector<const product*> suppliers;
  const auto add = [&](const product* supplier) {
    if (supplier != nullptr && is_ordered(*supplier)) suppliers.push_back(supplier);
  };
  for (const auto& target : record.target_dep) {
    if (target == nullptr || target->need_no_install != 0) continue;
    for (const auto& category : target->category_dep) {
      if (category != nullptr) add(category->product);
    }
  }
  for (const needed_patch& patch : record.needed_patches) add(patch.supplier);
  return suppliers;
}

// Tells whether `from` needs `wanted`, directly or by others. `seen` are those looked at before.
bool needs(const product* from, const product* wanted, std::set<const product*>& seen) {
  if (!seen.insert(from).second) return false;
  const auto suppliers = suppliers_of(*from);
  return std::any_of(suppliers.begin(), suppliers.end(), [&](const product* supplier) {
    return supplier == wanted || needs(supplier, wanted, seen);
  });
}

// Checks that `record` stands behind its suppliers in `order`, whose products end before `end`.
void check_place(const product& record, const installation_order& order,
                 installation_order::const_iterator end) {
  const auto place = std::find(order.begin(), end, &record);
  for (const product* supplier : suppliers_of(record)) {
    std::set<const product*> seen;
    if (needs(supplier, &record, seen)) continue;  // a ring has no order
    require(std::find(order.begin(), place, supplier) != place,
            "suppliers are installed before those that need them");
  }
}

// What holds where the operator has answered all questions.
void check_result(product_table& table) {
  installation_order order;
  const std::size_t placed = get_inst_order(table, order);
  const auto end = order.begin() + static_cast<std::ptrdiff_t>(placed);
  require(std::find(order.begin(), end, nullptr) == end, "the order has no gap");
  require(std::all_of(end, order.end(), [](const product* record) { return record == nullptr; }),
          "the order ends behind its last product");
  const std::string makefile = read_file(MAKEFILE);
  require(makefile.find("\nproducts:") != std::string::npos, "the makefile makes the products");
  require(makefile.ends_with("\t$(CC) $(OPTS) -o ./$@ ./$*.c\n\n\n"), "the makefile is complete");

  for (product& record : table) {
    const auto times = std::count(order.begin(), end, &record);
    if (!is_ordered(record)) {
      require(times == 0, "only products of this run are in the order");
      continue;
    }
    // One that depends on itself stands there twice; so many may leave no room for others.
    require((times > 0 && times <= 2) || placed == TABLE_SIZE, "the order holds each product");
    if (times == 0) continue;
    check_place(record, order, end);
    if (record.id.empty()) continue;
    const std::string id(record.id);
    require(makefile.find("\n" + id + ": " + id + "-message") != std::string::npos,
            "the makefile has a rule for each product");
    const std::string settings = id + ".dat";
    if (record.descr_avail == NO_DESCRIPTION) continue;
    require(read_file(settings).find("\nPRODUCT_NAME = ") != std::string::npos,
            "each described product has its settings file");
  }
}

void run(product_table& table) {
  try {
    start_up();
    load_catalogue(table);
    run_installation(table);
  } catch (const farewell&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string& directory = use_scratch_directory();
  static const std::string messages = [] {
    put_tools_on_path(directory);
    return make_messages();
  }();
  static product_table table;

  const run_input input = cut(as_text(data, size), directory);
  for (const auto& [name, content] : input.files) write_file(name, content);
  write_file("morvane.rsc", messages + input.messages);
  set_up_host(input, directory);

  for (product& record : table) record = product();
  rscok = false;
  return_code = 1;
  const memory_file answers = open_memory(input.answers);
  std::FILE* const terminal = stdin;
  stdin = answers.get();
  run(table);
  stdin = terminal;

  check(table);
  if (return_code == 0) check_result(table);
  tidy_up(directory);
  return 0;
}
