#include "messages/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "catalogue/description_keywords.h"
#include "messages/table.h"
#include "support/messages.h"

namespace morvane {
namespace {

std::set<int> numbers_of(message_kind kind) {
  std::set<int> numbers;
  for (const message_description& each : MESSAGES) {
    if (each.kind == kind) numbers.insert(each.number);
  }
  return numbers;
}

TEST(MessageList, NamesEveryMessageOnce) {
  std::set<int> numbers;
  std::set<std::string_view> names;
  for (const message_description& each : MESSAGES) {
    EXPECT_GE(each.number, 1) << each.name;
    EXPECT_LT(each.number, MESSAGE_COUNT) << each.name;
    EXPECT_TRUE(numbers.insert(each.number).second) << each.name;
    EXPECT_TRUE(names.insert(each.name).second) << each.name;
  }
}

TEST(MessageList, GivesNumberKindAndTextsOfAName) {
  const auto described = [](std::string_view name) {
    return *std::ranges::find(MESSAGES, name, &message_description::name);
  };
  EXPECT_EQ(described("RULER").number, RULER);
  EXPECT_EQ(described("RULER").kind, message_kind::TEXT);
  EXPECT_EQ(described("SYSTEM_NOT_SUPPORTED").number, SYSTEM_NOT_SUPPORTED.number);
  EXPECT_EQ(described("SYSTEM_NOT_SUPPORTED").kind, message_kind::FORMAT);
  EXPECT_EQ(described("SYSTEM_NOT_SUPPORTED").texts, 3);
}

TEST(MessageList, HasAKeywordForEveryEntryOfADescription) {
  std::set<int> entries;
  for (const keyword& each : KEYWORDS) entries.insert(each.number);
  EXPECT_EQ(numbers_of(message_kind::KEYWORD), entries);
}

template <typename MESSAGE, typename... TEXTS>
concept takes = requires(MESSAGE message, TEXTS... texts) {
  fill(message, texts...);
};

TEST(MessageFormat, TakesTheTextsOfTheListOnly) {
  using value = std::string_view;
  EXPECT_TRUE((takes<message_format<0>>));
  EXPECT_FALSE((takes<message_format<0>, value>));
  EXPECT_FALSE((takes<message_format<3>, value, value>));
  EXPECT_TRUE((takes<message_format<3>, value, value, value>));
  EXPECT_FALSE((takes<message_format<3>, value, value, int>));
  EXPECT_FALSE((takes<message_number>));
  EXPECT_FALSE((takes<message_number, value>));
}

template <typename NUMBER>
concept has_a_text = requires(NUMBER number) {
  r[number];
};

TEST(MessageFormat, CannotBePrintedUnfilled) {
  EXPECT_TRUE(has_a_text<message_number>);
  EXPECT_FALSE(has_a_text<message_format<1>>);
}

TEST(MessageFormat, IsFilledInOrder) {
  use_test_messages();
  EXPECT_EQ(fill(SYSTEM_NOT_SUPPORTED, "one", std::string("two"), text<9>("three")),
            "<117 one two three>\n");
  set_message(ACCESS_QUESTION.number, "%5s, %s, 100%%");
  EXPECT_EQ(fill(ACCESS_QUESTION, "abc"), "  abc, , 100%");
}

}  // namespace
}  // namespace morvane
