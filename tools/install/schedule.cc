#include "install/schedule.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace morvane {

namespace {

std::string canonical(const std::string& path) {
  std::error_code error;
  const std::filesystem::path found = std::filesystem::weakly_canonical(path, error);
  return error ? path : found.native();
}

// As `is_below`, for paths in which no link is left.
bool lies_below(const std::string& path, const std::string& other) {
  return path == other || path.starts_with(other.ends_with('/') ? other : other + "/");
}

struct place_of_product {
  std::string directory;
  std::vector<std::string> needed;  // directories of what it needs
};

bool needs(const place_of_product& one, const place_of_product& other) {
  return std::ranges::find(one.needed, other.directory) != one.needed.end();
}

}  // namespace

bool is_below(const std::string& path, const std::string& other) {
  return lies_below(canonical(path), canonical(other));
}

std::vector<std::vector<std::size_t>> waits_of(const install_plan& plan) {
  std::vector<place_of_product> places;
  std::vector<std::vector<std::size_t>> waits;
  for (const product_plan& product : plan.products) {
    place_of_product place{canonical(product.facts.path), {}};
    for (const settled_need& need : product.settings.needs) {
      place.needed.push_back(canonical(need.directory));
    }
    std::vector<std::size_t> earlier;
    for (std::size_t i = 0; i < places.size(); ++i) {
      const place_of_product& other = places[i];
      if (lies_below(place.directory, other.directory) ||
          lies_below(other.directory, place.directory) || needs(place, other) ||
          needs(other, place)) {
        earlier.push_back(i);
      }
    }
    waits.push_back(std::move(earlier));
    places.push_back(std::move(place));
  }
  return waits;
}

}  // namespace morvane
