#include "install/installation.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <optional>

#include "install/kept_copies.h"
#include "install/make_run.h"
#include "install/product_receipt.h"
#include "install/schedule.h"
#include "platform/file.h"

namespace morvane {

namespace {

constexpr std::array ENDING_SIGNALS = {SIGINT, SIGTERM, SIGHUP};

// How a worker tells what came of its product.
enum worker_status { INSTALLED = 0, WITHOUT_RECEIPT = 1, NOT_INSTALLED = 2 };

void say(const descriptor& output, const std::string& text) {
  dprintf(output.number(), "%s\n", text.c_str());
}

// Installs one product, in a process of its own, whose commands hold back the signals of `mask`.
worker_status work(const product_plan& product, const installation_options& options,
                   const descriptor& output, const sigset_t& mask) {
  if (!options.kept.empty()) {
    const std::string why = keep_replaced(product, options.kept);
    if (!why.empty()) {
      say(output, why);
      return NOT_INSTALLED;
    }
  }
  std::string why = mark_incomplete(product.facts, options.registry);
  if (!why.empty()) {
    say(output, "the receipt cannot be marked: " + why);
    return NOT_INSTALLED;
  }
  const product_receipt receipt(product);
  if (!run_make(product.facts.id, output, mask)) return NOT_INSTALLED;
  why = receipt.keep(options.registry);
  if (why.empty()) return INSTALLED;
  if (ftruncate(output.number(), 0) == 0) lseek(output.number(), 0, SEEK_SET);
  say(output, "no receipt could be kept: " + why);
  return WITHOUT_RECEIPT;
}

// A file without a name, for what a worker and its commands write.
descriptor scratch_output() {
  const char* directory = std::getenv("TMPDIR");
  std::string name = std::string(directory == nullptr ? "/tmp" : directory) + "/morvane.XXXXXX";
  descriptor file(mkstemp(name.data()));
  if (!file.is_open()) return file;
  unlink(name.c_str());
  fcntl(file.number(), F_SETFD, FD_CLOEXEC);
  return file;
}

// Holds back the signals that are waited for, while it lives.
class awaited_signals {
 public:
  awaited_signals() {
    sigemptyset(&set_);
    sigaddset(&set_, SIGCHLD);
    for (const int signal : ENDING_SIGNALS) {
      struct sigaction action;
      const bool ignored = sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
      if (!ignored) sigaddset(&set_, signal);
    }
    sigprocmask(SIG_BLOCK, &set_, &before_);
  }
  ~awaited_signals() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  awaited_signals(const awaited_signals&) = delete;
  awaited_signals& operator=(const awaited_signals&) = delete;

  // Those that were held back before.
  const sigset_t& before() const { return before_; }

  int next() const {
    int signal = 0;
    while (sigwait(&set_, &signal) != 0) continue;
    return signal;
  }

 private:
  sigset_t set_{};
  sigset_t before_{};
};

struct worker {
  std::size_t product = 0;
  descriptor output;
};

class installer {
 public:
  installer(const install_plan& plan, const installation_options& options,
            const installation_listener& listener)
      : plan_(plan), options_(options), listener_(listener), waits_(waits_of(plan)) {
    result_.products.resize(plan.products.size());
  }

  installation_result run() {
    begin_what_may();
    while (!workers_.empty()) {
      const int signal = signals_.next();
      if (signal == SIGCHLD) {
        reap();
        begin_what_may();
      } else {
        end_early(signal);
      }
    }
    return std::move(result_);
  }

 private:
  product_outcome& outcome(std::size_t product) { return result_.products[product].outcome; }

  bool is_installed(std::size_t product) {
    return outcome(product) == product_outcome::INSTALLED ||
           outcome(product) == product_outcome::UNRECORDED;
  }

  bool is_running(std::size_t product) const {
    return std::ranges::any_of(workers_,
                               [&](const auto& each) { return each.second.product == product; });
  }

  void begin_what_may() {
    for (std::size_t i = 0; i < plan_.products.size(); ++i) {
      if (stopped_ || workers_.size() >= options_.jobs) return;
      const bool may_begin =
          outcome(i) == product_outcome::NOT_BEGUN && !is_running(i) &&
          std::ranges::all_of(waits_[i], [&](std::size_t other) { return is_installed(other); });
      if (may_begin) begin(i);
    }
  }

  void begin(std::size_t product) {
    listener_.begins(product);
    descriptor output = scratch_output();
    const pid_t child = output.is_open() ? fork() : -1;
    if (child == 0) be_worker(product, output);
    if (child < 0) {
      stopped_ = true;
      result_.products[product] = {product_outcome::FAILED,
                                   std::strerror(errno) + std::string("\n")};
      listener_.ended(product, result_.products[product]);
      return;
    }
    workers_.emplace(child, worker{product, std::move(output)});
  }

  // A session of its own: what is started there ends with it, and has no terminal to wait for. The
  // worker itself still holds the signals back: it waits for make to end, and keeps the receipt of
  // what is installed.
  [[noreturn]] void be_worker(std::size_t product, const descriptor& output) {
    setsid();
    _exit(work(plan_.products[product], options_, output, signals_.before()));
  }

  void reap() {
    for (;;) {
      int status = 0;
      const pid_t child = waitpid(-1, &status, WNOHANG);
      if (child < 0 && errno == EINTR) continue;
      if (child <= 0) return;
      const auto ended = workers_.find(child);
      if (ended == workers_.end()) continue;
      const worker done = std::move(ended->second);
      workers_.erase(ended);
      if (WIFSIGNALED(status)) kill(-child, SIGKILL);
      take(done, status);
    }
  }

  void take(const worker& done, int status) {
    product_result& result = result_.products[done.product];
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : NOT_INSTALLED;
    if (code == INSTALLED) {
      result.outcome = product_outcome::INSTALLED;
    } else if (code == WITHOUT_RECEIPT) {
      result.outcome = product_outcome::UNRECORDED;
    } else {
      result.outcome = result_.signal != 0 ? product_outcome::INTERRUPTED : product_outcome::FAILED;
    }
    stopped_ |= !is_installed(done.product);
    if (code != INSTALLED && lseek(done.output.number(), 0, SEEK_SET) == 0) {
      result.output = read_rest(done.output).value_or("");
    }
    listener_.ended(done.product, result);
  }

  // A second signal is not waited for.
  void end_early(int signal) {
    const int sent = result_.signal == 0 ? SIGTERM : SIGKILL;
    result_.signal = signal;
    stopped_ = true;
    for (const auto& [child, running] : workers_) kill(-child, sent);
  }

  const install_plan& plan_;
  const installation_options& options_;
  const installation_listener& listener_;
  const std::vector<std::vector<std::size_t>> waits_;
  const awaited_signals signals_;
  installation_result result_;
  std::map<pid_t, worker> workers_;
  bool stopped_ = false;
};

}  // namespace

bool installation_result::is_complete() const {
  return std::ranges::all_of(products, [](const product_result& each) {
    return each.outcome == product_outcome::INSTALLED;
  });
}

installation_result install_products(const install_plan& plan, const installation_options& options,
                                     const installation_listener& listener) {
  return installer(plan, options, listener).run();
}

}  // namespace morvane
