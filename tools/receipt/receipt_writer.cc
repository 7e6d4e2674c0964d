#include "receipt/receipt_writer.h"

#include <cstdio>

#include "answer_file/escaping.h"
#include "receipt/receipt_form.h"

namespace morvane {

namespace {

template <typename Words, typename Value>
std::string word(const Words& words, Value value) {
  return std::string(words[static_cast<std::size_t>(value)]);
}

std::string line(std::string_view name, const std::string& value) {
  return std::string(name) + " =" + (value.empty() ? "" : " ") + value + "\n";
}

std::string octal(unsigned mode) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%o", mode);
  return digits;
}

std::string time_text(std::uint64_t time) {
  std::string fraction = std::to_string(time % NANOSECONDS);
  fraction.insert(0, FRACTION_DIGITS - fraction.size(), '0');
  return std::to_string(time / NANOSECONDS) + "." + fraction;
}

std::string head_lines(const receipt& written) {
  std::string lines = std::string(RECEIPT_HEAD) + "\n";
  lines += line("product", escape_value(written.id));
  lines += line("name", escape_value(written.name));
  lines += line("version", escape_value(written.version));
  lines += line("directory", escape_value(written.directory));
  lines += line("owner", escape_value(written.owner));
  lines += line("group", escape_value(written.group));
  lines += line("access", written.access ? "yes" : "no");
  lines += line("made", written.made_afterwards ? "afterwards" : "with the installation");
  lines += line("complete", written.complete ? "yes" : "no");
  lines += line("installed", time_text(written.installed));
  lines += line("configured", time_text(written.configured));
  lines += line("archive", written.archive);
  lines += line("description", written.description);
  for (const std::string& part : written.parts) lines += line("part", escape_value(part));
  for (const std::string& id : written.originals) lines += line("patch-of", escape_value(id));
  for (const receipt_need& need : written.needs) {
    lines += line("need", escape_word(need.category));
    lines += line("need-directory", escape_value(need.directory));
    lines += line("need-name", escape_value(need.name));
    lines += line("need-version", escape_value(need.version));
  }
  lines += line("entries", std::to_string(written.entries.size()));
  return lines;
}

std::string entry_line(const receipt_entry& entry) {
  std::string line = word(KIND_WORDS, entry.kind) + " " + octal(entry.mode) + " " +
                     std::to_string(entry.owner) + " " + std::to_string(entry.group) + " " +
                     word(BEFORE_WORDS, entry.before) + " " + word(ORIGIN_WORDS, entry.origin) +
                     " " + escape_word(entry.path);
  if (entry.kind == file_kind::FILE) {
    line += " " + std::to_string(entry.size) + " " + std::to_string(entry.modified) + " " +
            entry.digest;
  }
  if (entry.kind == file_kind::LINK) line += " " + escape_word(entry.target);
  return line + "\n";
}

}  // namespace

std::string receipt_text(const receipt& written) {
  std::string text = head_lines(written);
  for (const receipt_entry& entry : written.entries) text += entry_line(entry);
  return text;
}

}  // namespace morvane
