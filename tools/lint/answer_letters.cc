#include "lint/answer_letters.h"

#include <cctype>
#include <string>

#include "lint/spelling.h"

namespace morvane {

namespace {

bool is_letter(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

bool is_of_word(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

std::string in_small_letters(std::string_view text) {
  std::string result;
  for (const char c : text) result += small(c);
  return result;
}

}  // namespace

bool are_different_letters(std::string_view letters) {
  std::set<char> different;
  for (const char c : letters) {
    if (is_letter(c)) different.insert(small(c));
  }
  return different.size() == letters.size();
}

std::set<std::size_t> answers_named(std::string_view text, std::string_view letters) {
  const std::string answers = in_small_letters(letters);
  std::set<std::size_t> named;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool alone =
        (i == 0 || !is_of_word(text[i - 1])) && (i + 1 == text.size() || !is_of_word(text[i + 1]));
    const std::size_t answer = answers.find(small(text[i]));
    if (alone && answer != std::string::npos) named.insert(answer);
  }
  return named;
}

}  // namespace morvane
