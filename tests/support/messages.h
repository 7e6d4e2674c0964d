// Messages for tests: short texts that show where each stands.
#ifndef MORVANE_TESTS_SUPPORT_MESSAGES_H
#define MORVANE_TESTS_SUPPORT_MESSAGES_H

#include <string_view>

#include "messages/table.h"

namespace morvane {

// Fills `r` so that message N reads "<N>", but for those that the program interprets: answer
// letters "ynq", a ruler of 60 dashes, empty frames, the question format "%s%s %s", the
// installed-products directory "install", the formats that are filled with one or three texts, the
// commands "true", numbers, and keywords such as Name and NeedsType. Sets `rscok`.
void use_test_messages();

// Replaces one message.
inline void set_message(int number, std::string_view text) {
  r.store(number, text);
}

}  // namespace morvane

#endif  // MORVANE_TESTS_SUPPORT_MESSAGES_H
