// The names of questions and of what is answered, which no language changes.
#ifndef MORVANE_ANSWERS_QUESTION_NAME_H
#define MORVANE_ANSWERS_QUESTION_NAME_H

#include <optional>
#include <string>
#include <string_view>

#include "catalogue/product.h"
#include "console/question.h"

namespace morvane {

// Names in the lines above the first section.
inline constexpr std::string_view PRODUCTS = "products";
inline constexpr std::string_view RECONFIGURE = "reconfigure";
inline constexpr std::string_view GO_ON_UNSUITABLE = "go-on-all-the-same";
inline constexpr std::string_view GO_ON_TOOLLESS = "go-on-without-tools";
inline constexpr std::string_view LINKS_FILE = "links-file";

// Names in the section of a product.
inline constexpr std::string_view KEEP_TOOLLESS = "keep-without-tools";
inline constexpr std::string_view DIRECTORY = "directory";
inline constexpr std::string_view CREATE = "create-directory";
inline constexpr std::string_view OWNER_NAME = "owner";
inline constexpr std::string_view GROUP_NAME = "group";
inline constexpr std::string_view ACCESS = "access";
// Those of a part, which is the name of one of the parts of `record`, as a view of it: there may be
// several of the same name, which are counted.
std::string part_name(const product& record, std::string_view part);
std::string type_name(const product& record, std::string_view part, std::string_view category);
std::string supplier_name(const product& record, std::string_view part, std::string_view category);
std::string patch_name(int level);

// Values besides names, directories and suppliers.
inline constexpr std::string_view YES_VALUE = "yes";
inline constexpr std::string_view NO_VALUE = "no";
inline constexpr std::string_view LEFT_OPEN = "left open";  // of a patch

// Returns the title of the section of `record`: one that is installed here has its own, beside that
// of the product that can be installed.
std::string section_title(const product& record);

// Returns the name of the line that answers `asked`; nothing where none does.
std::optional<std::string> answer_name(const question& asked);

// Returns what tells `asked` apart from the other questions of a run.
std::string identity_of(const question& asked);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_QUESTION_NAME_H
