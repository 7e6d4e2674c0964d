// morvane-answers: keeps the answers of a run as results, checks them, and plays them again.
#include "answers/answers_command.h"

int main(int count, char** arguments) {
  return static_cast<int>(morvane::run_answers(count, arguments));
}
