// What the shell says about files and directories.
#ifndef MORVANE_CATALOGUE_LISTING_H
#define MORVANE_CATALOGUE_LISTING_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

// What a product's files are named after its identifier.
inline constexpr std::string_view ARCHIVE_ENDING = ".tar";
inline constexpr std::string_view DESCRIPTION_ENDING = ".descr";

using file_names = std::vector<std::string>;

// Returns the names in `directory` that match the shell wildcard `pattern`, in the order of `ls`,
// but for those of directories; none where the directory does not exist or nothing matches. Nothing
// where something matches and cannot be listed; standard error then says so.
std::optional<file_names> get_files(std::string_view directory, std::string_view pattern);

// Returns the current directory, without its first component (an automounter's mount prefix) where
// the rest names the same directory and no other user can change that; nothing where it cannot be
// obtained.
std::optional<std::string> get_pwd();

// Returns the current directory as `get_pwd` does; ends the program where it cannot be obtained.
std::string current_directory();

// Says on standard error that the current directory cannot be obtained, and ends the program.
[[noreturn]] void leave_without_current_directory();

// Returns the directory that holds the descriptions of the products installed in `directory`.
std::string installed_products_directory(std::string_view directory);

// Returns `file_name` without its `ending`: the identifier of the product.
std::string_view identifier_of(std::string_view file_name, std::string_view ending);

}  // namespace morvane

#endif  // MORVANE_CATALOGUE_LISTING_H
