// Descriptions for tests: pieces, reading them, and looking at what came of it.
#ifndef MORVANE_TESTS_SUPPORT_DESCRIPTIONS_H
#define MORVANE_TESTS_SUPPORT_DESCRIPTIONS_H

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "catalogue/description_parser.h"
#include "support/child.h"
#include "support/messages.h"

namespace morvane {

// What came of reading a description.
struct reading {
  product record;
  std::string errors;
};

// Reads a description with `content`; without content there is no file.
inline reading read(std::optional<std::string> content, const std::string& identifier = "x",
                    const std::string& directory = ".") {
  const scratch_directory here;
  if (content) write_file(directory + "/" + identifier + ".descr", *content);
  reading seen;
  testing::internal::CaptureStderr();
  read_product(directory, identifier, seen.record);
  seen.errors = testing::internal::GetCapturedStderr();
  return seen;
}

// Tests in which messages may be changed.
class Description : public testing::Test {
 protected:
  Description() { use_test_messages(); }
};

inline std::string unknown(const std::string& word) {
  return "morvane : unkown keyword '" + word + "' found in file './x.descr'\n";
}

// The reports on a rejected entry: its "=" is met as an entry of its own.
inline std::string ignored(const std::string& word) {
  return "morvane : Error in x.descr : " + word + " ignored !\n" + unknown("");
}

inline std::string misplaced(const std::string& word) {
  return "morvane : Error in x.descr : array overflow, or " + word +
         " occured before NeedsCategory or Target!\n" + unknown("");
}

inline std::string of(std::size_t count, char c) {
  return std::string(count, c);
}

inline std::string repeat(int count, const std::string& entry) {
  std::string entries;
  for (int i = 0; i < count; ++i) entries += entry;
  return entries;
}

inline const std::string TARGET = "Target = t\n";
inline const std::string NEEDED = "NeedsCategory = c\n";
inline const std::string CATEGORY = TARGET + NEEDED;
inline const std::string TYPE = CATEGORY + "NeedsType = y\n";

// Return what stands in a slot, or an unset record where nothing does.
inline const target_dep& target(const product& p, std::size_t slot = 0) {
  static const target_dep none;
  return p.target_dep[slot] ? *p.target_dep[slot] : none;
}

inline const category_dep& category(const product& p, std::size_t slot = 0,
                                    std::size_t of_target = 0) {
  static const category_dep none;
  const auto& list = target(p, of_target).category_dep;
  return list[slot] ? *list[slot] : none;
}

inline const type_dep& type(const product& p, std::size_t slot = 0) {
  static const type_dep none;
  const auto& list = category(p).type_dep;
  return list[slot] ? *list[slot] : none;
}

inline std::string show(std::string_view field) {
  return std::string(field);
}
inline std::string show(const long_text& field) {
  return field.value_or("(absent)");
}
inline std::string show(int number) {
  return std::to_string(number);
}

}  // namespace morvane

#endif  // MORVANE_TESTS_SUPPORT_DESCRIPTIONS_H
