// The keywords that the message file which came with the command has.
#ifndef MORVANE_LINT_OWN_MESSAGES_H
#define MORVANE_LINT_OWN_MESSAGES_H

#include <string_view>

#include "messages/numbers.h"

namespace morvane {

// Returns which message is the keyword `word` there; none where it is no keyword, or there is no
// such file.
message_number own_keyword(std::string_view word);

// Sees to it that the message table `r` has keywords with which descriptions can be read: where it
// lacks some, or holds some that no entry can have, it is filled anew from the file that came with
// the command. Returns false where that cannot be read.
bool use_keywords();

}  // namespace morvane

#endif  // MORVANE_LINT_OWN_MESSAGES_H
