// The input of the whole run: a text in sections, so that it can be read and written by hand.
//
//   == messages             lines of the message file, behind those that every run has
//   == answers              what the operator types
//   == host                 what the host is called; "(ordinary)" in it: not run by the superuser
//   == alpha.tar            a file of the distribution, with its content
//   == opt/x/install/b.descr  a file below the directory of the run
//
// "@DIR@" stands for that directory everywhere. What comes before the first section counts as
// answers.
#ifndef MORVANE_FUZZ_INPUT_H
#define MORVANE_FUZZ_INPUT_H

#include <map>
#include <string>
#include <string_view>

namespace morvane {

struct run_input {
  std::string messages;
  std::string answers;
  std::string host;
  std::map<std::string, std::string> files;  // content by relative path
};

run_input cut(std::string_view input, std::string_view directory);

}  // namespace morvane

#endif  // MORVANE_FUZZ_INPUT_H
