// The files of a product: what they are called after its identifier, and where they lie.
#ifndef MORVANE_CATALOGUE_PRODUCT_FILES_H
#define MORVANE_CATALOGUE_PRODUCT_FILES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

inline constexpr std::string_view ARCHIVE_ENDING = ".tar";
inline constexpr std::string_view DESCRIPTION_ENDING = ".descr";
inline constexpr std::string_view SETTINGS_ENDING = ".dat";

// Returns the directory that holds the descriptions of the products installed in `directory`.
std::string installed_products_directory(std::string_view directory);

// Returns the path of the description of `identifier` in `directory`.
std::string description_path(std::string_view directory, std::string_view identifier);

using identifiers = std::vector<std::string>;

// Return the identifiers of the archives, or of the descriptions, in `directory`, in the order of
// `ls`. Nothing where there are some and they cannot be listed; standard error then says so.
std::optional<identifiers> archives_in(std::string_view directory);
std::optional<identifiers> descriptions_in(std::string_view directory);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_PRODUCT_FILES_H
