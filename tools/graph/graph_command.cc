#include "graph/graph_command.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "command/command_line.h"
#include "command/whole_file.h"
#include "distribution/distribution.h"
#include "graph/drawing.h"
#include "graph/picture.h"
#include "graph/picture_text.h"
#include "graph/run.h"
#include "needs/supply.h"
#include "report/finding.h"

namespace morvane {

namespace {

enum class format { DOT, SVG, JSON };

struct graph_options {
  morvane::format format = format::DOT;
  bool run = false;
  bool reduced = false;
  std::string product;
  bool needs = false;
  bool needed_by = false;
  std::string output;
};

bool take_format(const std::string& name, format& taken) {
  const std::vector<std::string> names = {"dot", "svg", "json"};
  const auto found = std::ranges::find(names, name);
  taken = static_cast<format>(found - names.begin());
  return found != names.end();
}

bool take_text(const std::string& text, std::string& taken) {
  taken = text;
  return !text.empty();
}

command described_command(graph_options& options) {
  const auto flag = [](bool& taken) {
    return [&taken](const std::string&) { return taken = true; };
  };
  return {"morvane-graph",
          "[DIRECTORY]",
          "Draws which products of a distribution need which.",
          {{"format", "FORMAT", "dot, svg or json",
            [&](const std::string& name) { return take_format(name, options.format); }},
           {"run", "", "draw what was chosen in a run there", flag(options.run)},
           {"product", "ID", "draw only what is related with a product",
            [&](const std::string& id) { return take_text(id, options.product); }},
           {"needs", "", "with --product: only what it needs", flag(options.needs)},
           {"needed-by", "", "with --product: only what needs it", flag(options.needed_by)},
           {"reduce", "", "leave out needs that follow from others", flag(options.reduced)},
           {"o", "FILE", "write the picture to FILE",
            [&](const std::string& file) { return take_text(file, options.output); }}}};
}

direction wanted_direction(const graph_options& options) {
  if (options.needs == options.needed_by) return direction::BOTH;
  return options.needs ? direction::NEEDS : direction::NEEDED_BY;
}

// Says what a picture of the distribution leaves out.
void complain_of_descriptions(const command& described, const distribution& looked_at) {
  std::size_t archives = 0;
  for (const distributed_product& product : looked_at.products) {
    if (product.archive || product.has_source_tree) ++archives;
    const read_description& description = product.description;
    if (description.outcome == read_outcome::IMPOSSIBLE) {
      complain(described, printable(description.file) + ": cannot be read, and is left out");
    } else if (!description.faults.empty()) {
      complain(described, printable(description.file) +
                              ": not all of it is understood, see what morvane-lint says");
    }
  }
  if (archives > TABLE_SIZE) {
    complain(described, "the program's table holds " + std::to_string(TABLE_SIZE) +
                            " products: the others are left out");
  }
}

// Returns the picture in the wanted format, or nothing where that does not work.
std::optional<std::string> formatted(const command& described, const picture& drawn,
                                     format wanted) {
  if (wanted == format::JSON) return json_text(drawn);
  if (wanted == format::DOT) return dot_text(drawn);
  drawing done = draw_as_svg(dot_text(drawn));
  if (!done.svg) complain(described, done.fault);
  return std::move(done.svg);
}

bool write_out(const std::string& text, const std::string& file) {
  if (!file.empty()) return write_whole_file(file, text);
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
         std::fflush(stdout) == 0;
}

exit_status draw(const command& described, const graph_options& options,
                 const std::string& directory) {
  const auto refuse = [&](const std::string& why) {
    complain(described, why);
    return exit_status::WRONG_USE;
  };
  if (!choose_messages(directory)) {
    return refuse(printable(directory) + ": there is no message file");
  }
  const std::optional<distribution> loaded = load_distribution(directory);
  if (!loaded) return refuse(printable(directory) + ": " + std::strerror(errno));
  complain_of_descriptions(described, *loaded);

  picture drawn = options.run ? picture_of_run(directory, *loaded) : picture_of(needs_in(*loaded));
  if (options.run && drawn.nodes.empty()) {
    return refuse(printable(directory) + ": no run has written settings here");
  }
  if (!options.product.empty() &&
      !keep_related(drawn, options.product, wanted_direction(options))) {
    return refuse("there is no product '" + printable(options.product) + "'");
  }
  if (options.reduced) reduce(drawn);
  const std::optional<std::string> text = formatted(described, drawn, options.format);
  if (!text) return exit_status::WRONG_USE;
  if (write_out(*text, options.output)) return exit_status::GOOD;
  return refuse((options.output.empty() ? "the picture" : printable(options.output)) + ": " +
                std::strerror(errno));
}

}  // namespace

exit_status run_graph(int count, char** arguments) {
  graph_options options;
  const command described = described_command(options);
  const auto parsed = parse_command_line(described, count, arguments);
  if (const exit_status* ended = std::get_if<exit_status>(&parsed)) return *ended;
  const auto& operands = std::get<std::vector<std::string>>(parsed);
  if (operands.size() > 1) {
    complain(described, "one directory at a time");
    return exit_status::WRONG_USE;
  }
  if ((options.needs || options.needed_by) && options.product.empty()) {
    complain(described, "--needs and --needed-by go with --product");
    return exit_status::WRONG_USE;
  }
  return draw(described, options, operands.empty() ? "." : operands.front());
}

}  // namespace morvane
