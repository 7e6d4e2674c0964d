#include "answers/answer_finding.h"

namespace morvane {

std::string_view trouble_word(answer_trouble trouble) {
  switch (trouble) {
    case answer_trouble::UNREADABLE:
      return "unreadable";
    case answer_trouble::MISSING:
      return "missing";
    case answer_trouble::LEFT_OVER:
      return "left over";
    case answer_trouble::REFUSED:
      return "refused";
    case answer_trouble::ENDED:
      break;
  }
  return "ended";
}

}  // namespace morvane
