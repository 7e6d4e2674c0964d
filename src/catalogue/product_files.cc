#include "catalogue/product_files.h"

#include "messages/table.h"
#include "platform/effects.h"
#include "text/format.h"

namespace morvane {

namespace {

std::optional<identifiers> files_in(std::string_view directory, std::string_view ending) {
  std::optional<file_names> names = on_host().list_files(directory, fill("*%s", {ending}));
  if (!names) return std::nullopt;
  for (std::string& name : *names) name.resize(name.size() - ending.size());
  return names;
}

}  // namespace

std::string installed_products_directory(std::string_view directory) {
  return fill("%s/%s", {directory, r[INSTALLED_PRODUCTS_DIRECTORY]});
}

std::string description_path(std::string_view directory, std::string_view identifier) {
  return fill("%s/%s%s", {directory, identifier, DESCRIPTION_ENDING});
}

std::optional<identifiers> archives_in(std::string_view directory) {
  return files_in(directory, ARCHIVE_ENDING);
}

std::optional<identifiers> descriptions_in(std::string_view directory) {
  return files_in(directory, DESCRIPTION_ENDING);
}

}  // namespace morvane
