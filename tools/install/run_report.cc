#include "install/run_report.h"

#include <signal.h>
#include <string.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

#include "report/finding.h"
#include "text/quoting.h"

namespace morvane {

namespace {

constexpr const char* COMMAND = "morvane-install";

}  // namespace

std::string command_to_continue(const std::vector<std::string>& chosen) {
  std::error_code error;
  std::string text = COMMAND;
  text += " -C " + quote(std::filesystem::current_path(error).native());
  for (const std::string& id : chosen) text += " " + quote(id);
  return text;
}

run_report::run_report(const install_plan& plan, std::string to_continue, std::FILE* progress)
    : plan_(plan),
      to_continue_(std::move(to_continue)),
      progress_(progress),
      on_terminal_(isatty(fileno(progress)) != 0) {}

void run_report::begins(std::size_t product) {
  ++begun_;
  if (!on_terminal_) return;
  clear_line();
  std::fprintf(progress_, "product %zu of %zu: %s ...", begun_, plan_.products.size(),
               id(product).c_str());
  std::fflush(progress_);
}

void run_report::ended(std::size_t product, const product_result& result) {
  clear_line();
  const std::string shown = id(product);
  switch (result.outcome) {
    case product_outcome::INSTALLED:
      ++installed_;
      std::fprintf(progress_, "%s: installed, %zu of %zu\n", shown.c_str(), installed_,
                   plan_.products.size());
      break;
    case product_outcome::UNRECORDED:
      std::fprintf(progress_, "%s: installed\n", shown.c_str());
      std::fflush(progress_);
      std::fprintf(stderr, "%s: %s: %s", COMMAND, shown.c_str(), printable(result.output).c_str());
      std::fputc('\n', stderr);
      break;
    case product_outcome::INTERRUPTED:
    case product_outcome::FAILED:
      std::fflush(progress_);
      std::fwrite(result.output.data(), 1, result.output.size(), stderr);
      std::fprintf(stderr, "%s: %s: %s\n", COMMAND, shown.c_str(),
                   result.outcome == product_outcome::FAILED ? "the installation failed, see above"
                                                             : "the installation was interrupted");
      break;
    case product_outcome::NOT_BEGUN:
      break;
  }
  std::fflush(progress_);
}

void run_report::finish(const installation_result& result) {
  if (result.is_complete()) return;
  std::string not_begun;
  bool unfinished = false;
  for (std::size_t i = 0; i < result.products.size(); ++i) {
    if (result.products[i].outcome == product_outcome::NOT_BEGUN) not_begun += " " + id(i);
    unfinished |= result.products[i].outcome != product_outcome::INSTALLED &&
                  result.products[i].outcome != product_outcome::UNRECORDED;
  }
  if (result.signal != 0) {
    std::fprintf(stderr, "%s: ended by signal: %s\n", COMMAND, strsignal(result.signal));
  }
  if (!not_begun.empty()) std::fprintf(stderr, "%s: not begun:%s\n", COMMAND, not_begun.c_str());
  if (!unfinished && not_begun.empty()) return;
  std::fprintf(stderr, "%s: the installation is not complete; to continue it, type: %s\n", COMMAND,
               to_continue_.c_str());
}

std::string run_report::id(std::size_t product) const {
  return printable(plan_.products[product].facts.id);
}

void run_report::clear_line() {
  if (on_terminal_) std::fputs("\r\033[K", progress_);
}

}  // namespace morvane
