#include "platform/signals.h"

#include <gtest/gtest.h>

#include <csignal>

#include "platform/shell.h"
#include "support/child.h"

namespace morvane {
namespace {

TEST(Signal, RemovesFilesAndThenEndsTheProgram) {
  for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
    const scratch_directory here;
    for (const char* name : {"first", "second", "third", "kept"}) write_file(name, "");
    EXPECT_EQ(signal_ending([=] {
                handle_signals();
                for (const char* name : {"first", "second", "kept", "third"}) {
                  if (name == std::string("third")) keep_on_signal("kept");
                  remove_on_signal(name);
                }
                raise(signal);
              }),
              signal);
    for (const char* name : {"first", "second", "third"}) EXPECT_FALSE(exists(name)) << name;
    EXPECT_TRUE(exists("kept"));
  }
}

TEST(Signal, ThatWasIgnoredAtTheStartStaysIgnored) {
  const scratch_directory here;
  write_file("file", "");
  EXPECT_EQ(signal_ending([] {
              signal(SIGHUP, SIG_IGN);
              handle_signals();
              remove_on_signal("file");
              raise(SIGHUP);
            }),
            0);
  EXPECT_TRUE(exists("file"));
}

TEST(Signal, ThatIsHeldBackTakesEffectAtTheEnd) {
  const scratch_directory here;
  EXPECT_EQ(signal_ending([] {
              handle_signals();
              const signals_held held;
              raise(SIGTERM);
              write_file("reached", "");
            }),
            SIGTERM);
  EXPECT_TRUE(exists("reached"));
}

TEST(Signal, EndsTheProgramByHand) {
  const scratch_directory here;
  write_file("file", "");
  EXPECT_EQ(signal_ending([] {
              handle_signals();
              remove_on_signal("file");
              end_by_signal(SIGQUIT);
            }),
            SIGQUIT);
  EXPECT_FALSE(exists("file"));
}

}  // namespace
}  // namespace morvane
