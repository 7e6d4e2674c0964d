#include "answer_file/answer_reader.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "answer_file/escaping.h"
#include "text/format.h"

namespace morvane {

namespace {

constexpr std::string_view VARIABLE = "variable ";

std::string_view trim(std::string_view text) {
  while (text.starts_with(' ') || text.starts_with('\t')) text.remove_prefix(1);
  while (text.ends_with(' ') || text.ends_with('\t')) text.remove_suffix(1);
  return text;
}

bool holds_control_characters(std::string_view line) {
  return std::ranges::any_of(line, [](char c) {
    return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7f';
  });
}

bool is_name_of_variable(std::string_view name) {
  return !name.empty() && std::ranges::all_of(name, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  });
}

class answer_reader {
 public:
  explicit answer_reader(const variable_values& given) : given_(given) {}

  answer_reading read(std::string_view text) {
    reading_.file.sections.push_back({});
    if (text.size() > LONGEST_ANSWER_FILE) {
      complain("the file is too long");
    } else {
      read_lines(text);
    }
    for (const auto& [name, value] : given_) {
      if (!variables_.contains(name)) reading_.unknown_variables.push_back(name);
    }
    return std::move(reading_);
  }

 private:
  void read_lines(std::string_view text) {
    while (!text.empty() && reading_.faults.size() < MOST_ANSWER_FAULTS) {
      ++line_;
      const std::size_t end = text.find('\n');
      if (end == std::string_view::npos) {
        complain("the line does not end: the file was cut off");
        return;
      }
      const std::string_view line = text.substr(0, end);
      text.remove_prefix(end + 1);
      if (line_ == 1 && line != ANSWER_FILE_HEAD) {
        complain(fill("the first line is not '%s'", {ANSWER_FILE_HEAD}));
        return;
      }
      if (line_ > 1) read_line(line);
    }
    if (line_ == 0) complain("the file is empty");
  }

  void read_line(std::string_view line) {
    if (line.size() > LONGEST_ANSWER_LINE) return complain("the line is too long");
    if (holds_control_characters(line)) return complain("the line holds control characters");
    const std::string_view content = trim(line);
    if (content.empty() || content.starts_with('#')) return;
    if (content.starts_with('[')) return open_section(content);
    const std::size_t sign = content.find('=');
    if (sign == std::string_view::npos) {
      return complain("neither 'name = value', nor '[section]', nor a comment");
    }
    const std::string_view name = trim(content.substr(0, sign));
    const std::string_view value = trim(content.substr(sign + 1));
    if (name.starts_with(VARIABLE)) {
      define_variable(trim(name.substr(VARIABLE.size())), value);
    } else {
      add_answer(name, value);
    }
  }

  void open_section(std::string_view line) {
    std::string title(trim(line.substr(1, line.size() - 2)));
    if (!line.ends_with(']') || title.empty()) return complain("not '[section]'");
    if (!unescape(title)) return complain("'%' is not followed by two hexadecimal digits");
    const auto [earlier, is_new] = line_of_section_.emplace(title, line_);
    if (!is_new) complain(fill("[%s] stands in line %d already", {title, earlier->second}));
    reading_.file.sections.push_back({std::move(title), line_, {}});
    line_of_name_.clear();
  }

  void define_variable(std::string_view name, std::string_view value) {
    if (reading_.file.sections.size() > 1) {
      return complain("a variable stands above the first section");
    }
    if (!is_name_of_variable(name)) {
      return complain("the name of a variable holds letters, digits and '_' alone");
    }
    if (variables_.contains(name)) return complain(fill("variable '%s' is given twice", {name}));
    const auto given = given_.find(name);
    // It counts as given even where its value will not do: one complaint is enough.
    variables_.emplace(name, filled(given == given_.end() ? value : given->second).value_or(""));
  }

  void add_answer(std::string_view name, std::string_view value) {
    answer_section& section = reading_.file.sections.back();
    if (name.empty()) return complain("there is no name");
    const auto [earlier, is_new] = line_of_name_.emplace(name, line_);
    if (!is_new) return complain(fill("'%s' stands in line %d already", {name, earlier->second}));
    const std::optional<std::string> text = filled(value);
    if (!text) return;
    if (text->empty() && !may_be_empty(section, name)) {
      return complain(fill("'%s' has no value", {name}));
    }
    section.answers.push_back({std::string(name), *text, line_});
  }

  // There are runs without a product.
  static bool may_be_empty(const answer_section& section, std::string_view name) {
    return section.title.empty() && (name == "products" || name == "reconfigure");
  }

  // Returns `value` with its variables filled in, or nothing after a complaint.
  std::optional<std::string> filled(std::string_view value) {
    std::string text;
    while (!value.empty()) {
      const std::size_t dollar = std::min(value.find('$'), value.size());
      text += value.substr(0, dollar);
      value.remove_prefix(dollar);
      if (!value.empty()) {
        const std::optional<std::string_view> variable = take_variable(value);
        if (!variable) return std::nullopt;
        text += *variable;
      }
      if (text.size() > LONGEST_ANSWER_LINE) {
        complain("the value is too long");
        return std::nullopt;
      }
    }
    if (holds_control_characters(text)) {
      complain("the value holds control characters");
    } else if (!unescape(text)) {
      complain("'%' is not followed by two hexadecimal digits");
    } else {
      return std::string(trim(text));
    }
    return std::nullopt;
  }

  // Takes the variable off `value`, which begins with its "$"; returns what it stands for, or
  // nothing after a complaint.
  std::optional<std::string_view> take_variable(std::string_view& value) {
    const std::size_t end = value.find('}');
    if (!value.starts_with("${") || end == std::string_view::npos) {
      complain("'$' does not begin a '${variable}'");
      return std::nullopt;
    }
    const std::string_view name = value.substr(2, end - 2);
    const auto found = variables_.find(name);
    if (found == variables_.end()) {
      complain(fill("there is no variable '%s' above", {name}));
      return std::nullopt;
    }
    value.remove_prefix(end + 1);
    return found->second;
  }

  void complain(std::string text) { reading_.faults.push_back({line_, std::move(text)}); }

  const variable_values& given_;
  variable_values variables_;
  std::map<std::string, std::size_t, std::less<>> line_of_section_;
  std::map<std::string, std::size_t, std::less<>> line_of_name_;  // of the last section
  std::size_t line_ = 0;
  answer_reading reading_;
};

}  // namespace

answer_reading read_answers(std::string_view text, const variable_values& given) {
  return answer_reader(given).read(text);
}

}  // namespace morvane
